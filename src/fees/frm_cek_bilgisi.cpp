#include "fees/frm_cek_bilgisi.h"

#include "base/turkish_text.h"
#include "ui/boxes.h"
#include "ui/inputs.h"
#include "ui/screen.h"

#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace fees {

FrmCekBilgisi::FrmCekBilgisi(const OdemeSatiri &odeme, const QStringList &bankalar, QWidget *parent)
    : QDialog(parent)
    , m_odeme(odeme)
{
    setObjectName(QStringLiteral("frmCekBilgisi"));
    setWindowTitle(QStringLiteral("Çek Detay Bilgileri"));
    setModal(true);
    m_cekNo = new QLineEdit(odeme.aciklama, this);
    m_cekNo->setObjectName(QStringLiteral("txtCekNo"));
    m_cekNo->setMaxLength(50);
    m_banka = new QComboBox(this);
    m_banka->setObjectName(QStringLiteral("cmbBanka"));
    m_banka->setEditable(true);
    m_banka->addItems(bankalar);
    m_banka->lineEdit()->setMaxLength(30);
    m_banka->setCurrentText(odeme.bankaAdi);
    m_sube = new QLineEdit(odeme.sube, this);
    m_sube->setObjectName(QStringLiteral("txtSube"));
    m_sube->setMaxLength(50);
    m_ciro = new QComboBox(this);
    m_ciro->setObjectName(QStringLiteral("cmbCiro"));
    m_ciro->setEditable(true);
    m_ciro->addItems({QStringLiteral("Kendisi"), QStringLiteral("Cirolu!")});
    m_ciro->lineEdit()->setMaxLength(30);
    m_ciro->setCurrentText(odeme.ciro);
    m_vade = new ui::DateEdit(this);
    m_vade->setObjectName(QStringLiteral("txtVadeTarihi"));
    m_vade->setDate(odeme.vadeTarihi.date());
    auto *tutar = new QLabel(base::Bicimle(odeme.odenen, QStringLiteral("###,###.00")), this);
    tutar->setObjectName(QStringLiteral("lblTutar"));

    auto *form = new QFormLayout;
    const auto row = [&](const QString &caption, QWidget *w) {
        auto *l = new QLabel(caption, this);
        l->setBuddy(w);
        form->addRow(l, w);
    };
    row(QStringLiteral("Çek &No :"), m_cekNo);
    row(QStringLiteral("&Banka :"), m_banka);
    row(QStringLiteral("Ş&ube :"), m_sube);
    row(QStringLiteral("&Ciro :"), m_ciro);
    row(QStringLiteral("&VadeTarihi :"), m_vade);
    form->addRow(new QLabel(QStringLiteral("Tutar :"), this), tutar);
    auto *cikis = ui::button(QStringLiteral("cmdCikis"), QStringLiteral("Çı&kış"), this);
    connect(cikis, &QPushButton::clicked, this, &QDialog::accept);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cikis);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addLayout(buttons);
    ui::moveWithEnter(this);
    m_cekNo->setFocus();
}

OdemeSatiri FrmCekBilgisi::odeme() const
{
    OdemeSatiri o = m_odeme;
    if (o.odenen <= Para()) {
        return o;
    }
    o.aciklama = m_cekNo->text().trimmed();
    o.bankaAdi = m_banka->currentText().trimmed();
    o.sube = m_sube->text().trimmed();
    o.ciro = m_ciro->currentText().trimmed();
    o.vadeTarihi = m_vade->date().isValid() ? QDateTime(m_vade->date(), QTime(0, 0)) : QDateTime();
    o.elle = true;
    return o;
}

} // namespace fees
