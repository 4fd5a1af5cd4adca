#include "maintenance/frm_yeni_calisma.h"

#include "store/database.h"
#include "ui/failure.h"
#include "ui/message.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace maintenance {

FrmYeniCalisma::FrmYeniCalisma(store::Database &db, QWidget *parent)
    : QDialog(parent)
    , m_db(db)
{
    setObjectName(QStringLiteral("FrmYeniCalisma"));
    setWindowTitle(QStringLiteral("Yeni Çalışma"));
    setModal(true);
    m_ad = new QLineEdit(this);
    m_ad->setObjectName(QStringLiteral("txtCalismaAdi"));
    m_ad->setMaxLength(50);
    m_ad->setPlaceholderText(QStringLiteral("Örnek: 2025-2026 Öğretim Yılı"));
    auto *form = new QFormLayout;
    form->addRow(QStringLiteral("Çalışma Adı :"), m_ad);
    auto *kaydet = new QPushButton(QStringLiteral("K&aydet"), this);
    kaydet->setObjectName(QStringLiteral("cmdKaydet"));
    kaydet->setDefault(true);
    auto *iptal = new QPushButton(QStringLiteral("İ&ptal"), this);
    auto *buttons = new QDialogButtonBox(this);
    buttons->addButton(kaydet, QDialogButtonBox::AcceptRole);
    buttons->addButton(iptal, QDialogButtonBox::RejectRole);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(new QLabel(QStringLiteral("Yeni çalışma boş bir veri dosyasıyla başlar; "
                                                "öğrenciler ve aidatlar taşınmaz."),
                                 this));
    layout->addLayout(form);
    layout->addWidget(buttons);
    setMinimumWidth(380);
    connect(kaydet, &QPushButton::clicked, this, &FrmYeniCalisma::CalismaKaydet);
    connect(iptal, &QPushButton::clicked, this, &QDialog::reject);
}

void FrmYeniCalisma::CalismaKaydet()
{
    const QString ad = m_ad->text().trimmed();
    if (ad.isEmpty()) {
        ui::notify(QStringLiteral("UYARI"), QStringLiteral("Lütfen çalışma adını giriniz."),
                   ui::Icon::Warning, this);
        return;
    }
    if (!store::DatabaseAc(m_db, store::Store::Global, false, false))
        return;
    base::Result<bool> taken = CalismaAdiVar(m_db, ad);
    if (!taken) {
        ui::HataBildir(taken.error());
        return;
    }
    if (*taken) {
        ui::notify(
            QStringLiteral("UYARI"),
            ad
                + QStringLiteral(" çalışma adı daha önceden kayıtlı.\nLütfen yeni bir çalışma "
                                 "adı giriniz."),
            ui::Icon::Warning, this);
        m_ad->clear();
        return;
    }
    base::Result<int> id = maintenance::CalismaKaydet(m_db, ad);
    if (!id) {
        ui::HataBildir(id.error());
        return;
    }
    m_calisma = Calisma{*id, ad};
    accept();
}

} // namespace maintenance
