#pragma once

#include "fees/auto_plan.h"
#include "fees/definitions.h"

#include <QDialog>

class QLineEdit;

namespace store {
class Database;
}
namespace ui {
class DateEdit;
class Grid;
class MoneyEdit;
} // namespace ui

namespace fees {

// "Otomatik Taksitlendirme": the plan of one account made anew from its fee, with the discounts
// marked and worked out in their order. "&Tamam" puts the plan into a copy of the account, which
// the account screen then saves; "İ&ptal" changes nothing.
class FrmOtomatikTaksit : public QDialog
{
    Q_OBJECT

public:
    FrmOtomatikTaksit(const HesapKaydi &hesap, const AidatTanimi &tanim,
                      const QList<IskontoTanimi> &standart, QWidget *parent = nullptr);

    // The account with the plan put in, after "&Tamam".
    const HesapKaydi &hesap() const { return m_hesap; }

    void KalanTutarHesapla();
    void TaksitPlanla();
    void IskontolariYenidenHesapla();
    void StandartIskontolariGuncelle();
    void Tamam();

private:
    void fillPlan(const QList<TaksitSatiri> &rows);
    void fillDiscounts(const QList<IskontoSecimi> &rows);
    QList<IskontoSecimi> readDiscounts() const;
    QList<Para> amounts() const;
    void planRowEdited(int row, int column);
    Para box(ui::MoneyEdit *e) const;

    HesapKaydi m_hesap;
    AidatTanimi m_tanim;
    QList<IskontoTanimi> m_standart;
    QString m_bicim;
    bool m_filling = false;
    bool m_discountsChanged = false;

    ui::MoneyEdit *m_aidatTutari = nullptr;
    ui::MoneyEdit *m_iskonto = nullptr;
    ui::MoneyEdit *m_toplam = nullptr;
    ui::MoneyEdit *m_pesinat = nullptr;
    QLineEdit *m_taksitSayisi = nullptr;
    QLineEdit *m_kalan = nullptr;
    ui::DateEdit *m_tarih = nullptr;
    ui::Grid *m_plan = nullptr;
    ui::Grid *m_indirimler = nullptr;
};

} // namespace fees
