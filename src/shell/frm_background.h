#pragma once

#include <QWidget>

class QLabel;
class QFrame;

namespace store {
class Database;
}

namespace shell {

// The background of the main window: the open year and working month, the school's name, the
// month's collection figures, and explanatory labels that the office may hide.
class FrmBackGround : public QWidget
{
    Q_OBJECT

public:
    explicit FrmBackGround(store::Database &db, QWidget *parent = nullptr);

    void BilgiGuncelle();
    void RaporHazirla();
    void aciklamalariGoster(bool goster);
    bool aciklamalarGorunur() const;

    // For the tests: the texts of the four lines.
    QStringList bilgiSatirlari() const;
    QString cariAySatiri() const;
    QString okulAdi() const;

protected:
    void paintEvent(QPaintEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;

private:
    store::Database &m_db;
    QLabel *m_lblCariAy = nullptr;
    QLabel *m_lblOkulAdi = nullptr;
    QLabel *m_lblBilgi[4] = {};
    QLabel *m_lblTutar[4] = {};
    QFrame *m_pano = nullptr;
    QWidget *m_aciklamalar = nullptr;
};

} // namespace shell
