#pragma once

#include "fees/account.h"

#include <QDialog>

class QComboBox;
class QLineEdit;

namespace ui {
class DateEdit;
class MoneyEdit;
} // namespace ui

namespace fees {

// "Ekle": the one row that may be added to an account while the fee screen is locked against
// changes: an installment ("[Yeni Taksit ekle]") or a payment ("Yeni Ödeme Ekle"). "Ekle" asks
// before the row goes to the account; "Geri" leaves it.
class FrmYeniEkle : public QDialog
{
    Q_OBJECT

public:
    enum class Tur { Taksit, Odeme };
    FrmYeniEkle(Tur tur, const QStringList &sekiller, QWidget *parent = nullptr);

    // The row typed, once "Ekle" was answered yes.
    DetaySatiri taksit() const;
    OdemeSatiri odeme() const;

private:
    void ekle();

    Tur m_tur;
    ui::DateEdit *m_tarih = nullptr;
    ui::MoneyEdit *m_tutar = nullptr;
    QComboBox *m_sekil = nullptr;
    QLineEdit *m_aciklama = nullptr;
    QLineEdit *m_fisNo = nullptr;
    ui::DateEdit *m_vade = nullptr;
};

} // namespace fees
