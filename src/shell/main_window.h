#pragma once

#include <QHash>
#include <QMainWindow>
#include <QVariantMap>

class QAction;
class QComboBox;
class QLabel;
class QMdiArea;
class QMdiSubWindow;
class QMenu;

namespace store {
class Database;
}

namespace shell {

class FrmBackGround;

// "MDIAidat": the main window. A frame holding every screen as a child window, with a menu band,
// a tool band (with the working-month selector) and a status band. Every command arrives as a
// tool name and is dispatched by it.
class MDIAidat : public QMainWindow
{
    Q_OBJECT

public:
    explicit MDIAidat(store::Database &db, QWidget *parent = nullptr);
    ~MDIAidat() override;

    // The start: background, login (and, on an empty user table, the first user), the working
    // year, the working month. False when the login was left: the program ends.
    bool MDIForm_Load();
    // Shows the window where it stood when it was last closed on this workstation, else
    // maximised on the screen it opens on.
    void pencereyiGoster();

    void ActBar_Click(const QString &tool);
    void ActBar_ComboChange(const QString &tool);
    // Opens the working-year screen and brings the window to the chosen year.
    void CalismaSec();
    void MenuDurumAyarla(bool acik);
    void CariAyDoldur();
    void CariAySec(int yyyymm);
    bool SabitBilgiKontrol();
    void BaslikGuncelle();
    // The background's explanatory labels, hidden when mnuShow.ini says "FALSE".
    void MenuAciklamaOku();

    FrmBackGround *background() const { return m_background; }
    QComboBox *cariAyCombo() const { return m_cmbCariAy; }
    QAction *action(const QString &tool) const { return m_actions.value(tool); }
    QMdiArea *mdiArea() const { return m_mdi; }
    // The open child window of a screen, nullptr when it is not open.
    QMdiSubWindow *screenWindow(const QString &formName) const;

    static QString programBasligi();

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    void buildBands();
    void yedekHatirlat();
    bool openScreen(const QString &tool, const QString &screen, const QVariantMap &ayar = {});
    // The rights in force are those of the screen in front: after a command, whatever it did.
    void rightsOfActiveScreen();
    void dispatch(const QString &tool);
    int childScreenCount() const;

    store::Database &m_db;
    QMdiArea *m_mdi = nullptr;
    FrmBackGround *m_background = nullptr;
    QComboBox *m_cmbCariAy = nullptr;
    QLabel *m_durumYazisi = nullptr;
    QHash<QString, QAction *> m_actions;
    QHash<QString, QMenu *> m_menus;
    QString m_calismaCaller;
    bool m_filling = false;
};

} // namespace shell
