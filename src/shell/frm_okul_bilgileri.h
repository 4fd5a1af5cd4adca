#pragma once

#include "maintenance/school.h"
#include "ui/screen.h"

#include <QList>

#include <utility>

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QRadioButton;

namespace store {
class Database;
}
namespace ui {
class DateEdit;
class MoneyEdit;
struct Box;
} // namespace ui

namespace shell {

// "Okul Bilgileri": the school's row of Sabit and the office switches.
class FrmOkulBilgileri : public ui::Screen
{
    Q_OBJECT

public:
    explicit FrmOkulBilgileri(store::Database &db, QWidget *parent = nullptr);

    void OkulbilgisiGetir();
    bool OkulbilgisiKaydet();
    void OkulbilgisiSil();

protected:
    bool save() override { return OkulbilgisiKaydet(); }

private:
    // Where a box stands: a page, or a frame on a page.
    enum class Place { School, Year, Options, Office, Till };
    struct BoxRow;
    static const QList<BoxRow> &boxTable();
    // Makes the boxes of a place from the table, in its order, keeps each in its member, and
    // gives them back in the order of their rows.
    QList<std::pair<ui::Box, QWidget *>> makeBoxes(Place place, QWidget *parent);

    // A school year chosen in its box: the months follow it.
    void yearChosen(const QString &year);
    void fillMonths(const QString &ogretimYili);
    void selectMonth(QComboBox *combo, const QString &yyyymm);
    bool formToRow(maintenance::OkulBilgisi &row);
    void refuse(const QString &text, QWidget *focus);

    store::Database &m_db;
    maintenance::OkulBilgisi m_row;

    QLineEdit *m_okulAdi = nullptr;
    QLineEdit *m_il = nullptr;
    QLineEdit *m_ilce = nullptr;
    QLineEdit *m_telefon = nullptr;
    QLineEdit *m_banka = nullptr;
    QLineEdit *m_resmiBaslik = nullptr;
    QPlainTextEdit *m_adres = nullptr;
    QLineEdit *m_mersis = nullptr;
    QLineEdit *m_ticaretSicil = nullptr;
    QLineEdit *m_vergiSicil = nullptr;
    QLineEdit *m_vergiDairesi = nullptr;

    QComboBox *m_ogretimYili = nullptr;
    QComboBox *m_basAy = nullptr;
    QComboBox *m_cariAy = nullptr;
    QComboBox *m_yuvarlama = nullptr;
    ui::DateEdit *m_donemBas = nullptr;
    ui::DateEdit *m_donemBit = nullptr;
    QRadioButton *m_paraTL = nullptr;
    QRadioButton *m_paraYTL = nullptr;
    QLineEdit *m_sonSenet = nullptr;
    QLineEdit *m_sonFatura = nullptr;
    QLineEdit *m_sonFis = nullptr;
    QCheckBox *m_ogrAOtoDeg = nullptr;
    QCheckBox *m_taksitKilitle = nullptr;
    QCheckBox *m_fisNoKilitle = nullptr;
    QCheckBox *m_taksitFatura = nullptr;
    QLabel *m_taksitFaturaUyari = nullptr;
    QCheckBox *m_silinenRapordaGoster = nullptr;

    ui::MoneyEdit *m_destekTutari = nullptr;
    QComboBox *m_destekAy[4] = {};
    ui::MoneyEdit *m_destekTaksit[4] = {};

    QCheckBox *m_okKilit = nullptr;
    QCheckBox *m_fisKilit = nullptr;
    QCheckBox *m_kasaAktar = nullptr;
    QLineEdit *m_kasaKod = nullptr;
    QCheckBox *m_kasaSor = nullptr;
};

} // namespace shell
