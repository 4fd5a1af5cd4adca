#include "fees/frm_yeni_ekle.h"

#include "base/turkish_text.h"
#include "ui/boxes.h"
#include "ui/inputs.h"
#include "ui/message.h"
#include "ui/screen.h"
#include "users/session.h"

#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace fees {

FrmYeniEkle::FrmYeniEkle(Tur tur, const QStringList &sekiller, QWidget *parent)
    : QDialog(parent)
    , m_tur(tur)
{
    setObjectName(QStringLiteral("sprYeniEkle"));
    setWindowTitle(tur == Tur::Taksit ? QStringLiteral("[Yeni Taksit ekle]")
                                      : QStringLiteral("Yeni Ödeme Ekle"));
    setModal(true);
    m_tarih = new ui::DateEdit(this);
    m_tarih->setObjectName(QStringLiteral("txtTarih"));
    m_tutar = new ui::MoneyEdit(this);
    m_tutar->setObjectName(QStringLiteral("txtTutar"));
    m_tutar->setFormat(users::durum().ParaFormati);
    m_tutar->setNegativeAllowed(false);
    m_sekil = new QComboBox(this);
    m_sekil->setObjectName(QStringLiteral("cmbOdemeSekli"));
    m_sekil->addItems(sekiller);
    auto *form = new QFormLayout;
    const auto row = [&](const QString &caption, QWidget *w) {
        auto *l = new QLabel(caption, this);
        l->setBuddy(w);
        form->addRow(l, w);
    };
    row(QStringLiteral("Ödeme &Tarihi :"), m_tarih);
    if (tur == Tur::Taksit) {
        row(QStringLiteral("T&aksit :"), m_tutar);
        row(QStringLiteral("Ödeme &şekli :"), m_sekil);
    } else {
        row(QStringLiteral("Ö&denen :"), m_tutar);
        row(QStringLiteral("Ödeme &Şekli :"), m_sekil);
        m_aciklama = new QLineEdit(this);
        m_aciklama->setObjectName(QStringLiteral("txtAciklama"));
        m_aciklama->setMaxLength(50);
        m_fisNo = new QLineEdit(this);
        m_fisNo->setObjectName(QStringLiteral("txtFisNo"));
        m_fisNo->setMaxLength(9);
        m_vade = new ui::DateEdit(this);
        m_vade->setObjectName(QStringLiteral("txtVade"));
        row(QStringLiteral("Açıkla&ma :"), m_aciklama);
        row(QStringLiteral("&Fiş No :"), m_fisNo);
        row(QStringLiteral("&Vade Tarihi :"), m_vade);
    }
    auto *geri = ui::button(QStringLiteral("cmdGeri"), QStringLiteral("&Geri"), this);
    auto *ekle = ui::button(QStringLiteral("cmdEkle"), QStringLiteral("&Ekle"), this);
    connect(geri, &QPushButton::clicked, this, &QDialog::reject);
    connect(ekle, &QPushButton::clicked, this, &FrmYeniEkle::ekle);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(geri);
    buttons->addWidget(ekle);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addLayout(buttons);
    ui::moveWithEnter(this);
    m_tarih->setFocus();
}

void FrmYeniEkle::ekle()
{
    if (!m_tarih->date().isValid()) {
        ui::notify(QStringLiteral("Dikkat"), QStringLiteral("Ödeme tarihini giriniz."),
                   ui::Icon::Warning, this);
        m_tarih->setFocus();
        return;
    }
    if (!m_tutar->isAcceptable() || !m_tutar->value() || m_tutar->value()->isZero()) {
        ui::notify(QStringLiteral("Dikkat"), QStringLiteral("Tutarı giriniz."), ui::Icon::Warning,
                   this);
        m_tutar->setFocus();
        return;
    }
    if (m_fisNo && !m_fisNo->text().trimmed().isEmpty()
        && !base::TamSayiCoz(m_fisNo->text().trimmed())) {
        ui::notify(QStringLiteral("Dikkat"),
                   QStringLiteral("Fiş numarası yalnız rakamlardan oluşur."), ui::Icon::Warning,
                   this);
        m_fisNo->setFocus();
        return;
    }
    if (!ui::ask(
            {QStringLiteral("Taksit Kayıt"), QStringLiteral("Taksit bilgileri kaydedilsin mi?")},
            this))
        return;
    accept();
}

DetaySatiri FrmYeniEkle::taksit() const
{
    DetaySatiri d;
    d.odemeTarihi = QDateTime(m_tarih->date(), QTime(0, 0));
    d.odenecek = m_tutar->value().value_or(Para());
    d.odemeSekli = m_sekil->currentText();
    d.elle = true;
    return d;
}

OdemeSatiri FrmYeniEkle::odeme() const
{
    OdemeSatiri o;
    o.odemeTarihi = QDateTime(m_tarih->date(), QTime(0, 0));
    o.odenen = m_tutar->value().value_or(Para());
    for (const users::OdemeSekli &s : users::OdemeSekilleriTablosu()) {
        if (s.ad == m_sekil->currentText())
            o.odemeSekli = s.kod;
    }
    o.aciklama = m_aciklama ? m_aciklama->text().trimmed() : QString();
    o.fisNo = m_fisNo ? base::TamSayiCoz(m_fisNo->text().trimmed()).value_or(0) : 0;
    o.vadeTarihi
        = m_vade && m_vade->date().isValid() ? QDateTime(m_vade->date(), QTime(0, 0)) : QDateTime();
    o.kullanici = users::durum().AktifKullanici;
    o.elle = true;
    return o;
}

} // namespace fees
