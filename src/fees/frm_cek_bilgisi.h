#pragma once

#include "fees/account.h"

#include <QDialog>

class QComboBox;
class QLineEdit;

namespace ui {
class DateEdit;
}

namespace fees {

// "Çek Detay Bilgileri": the cheque of one payment row. The cheque's number is kept in the
// payment's note. "Çı&kış" hands the row back changed when it carries an amount.
class FrmCekBilgisi : public QDialog
{
    Q_OBJECT

public:
    FrmCekBilgisi(const OdemeSatiri &odeme, const QStringList &bankalar, QWidget *parent = nullptr);

    // The row as the dialog leaves it.
    OdemeSatiri odeme() const;

private:
    OdemeSatiri m_odeme;
    QLineEdit *m_cekNo = nullptr;
    QComboBox *m_banka = nullptr;
    QLineEdit *m_sube = nullptr;
    QComboBox *m_ciro = nullptr;
    ui::DateEdit *m_vade = nullptr;
};

} // namespace fees
