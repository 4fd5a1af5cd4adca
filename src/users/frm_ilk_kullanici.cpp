#include "users/frm_ilk_kullanici.h"

#include "ui/failure.h"
#include "ui/inputs.h"
#include "ui/message.h"
#include "users/login.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace users {

FrmIlkKullanici::FrmIlkKullanici(store::Database &db, QWidget *parent)
    : QDialog(parent)
    , m_db(db)
{
    setObjectName(QStringLiteral("FrmIlkKullanici"));
    setWindowTitle(QStringLiteral("İlk Kullanıcı Tanımlama"));
    setModal(true);
    m_ad = new QLineEdit(this);
    m_ad->setObjectName(QStringLiteral("txtKullaniciAdi"));
    m_ad->setMaxLength(50);
    m_sifre1 = new QLineEdit(this);
    m_sifre1->setObjectName(QStringLiteral("txtSifre1"));
    m_sifre1->setEchoMode(QLineEdit::Password);
    m_sifre2 = new QLineEdit(this);
    m_sifre2->setObjectName(QStringLiteral("txtSifre2"));
    m_sifre2->setEchoMode(QLineEdit::Password);

    auto *info = new QLabel(QStringLiteral("Programda henüz tanımlı bir kullanıcı yok.\nProgramı "
                                           "kullanacak ilk kullanıcının adını ve şifresini "
                                           "giriniz. Bu kullanıcı bütün bölümlere girebilir; "
                                           "diğer kullanıcıları ve haklarını sonra \"Kullanıcı "
                                           "Belirleme ve Şifre\" bölümünden tanımlayabilirsiniz."),
                            this);
    info->setWordWrap(true);
    auto *form = new QFormLayout;
    form->addRow(QStringLiteral("Kullanıcı Adı :"), m_ad);
    form->addRow(QStringLiteral("Şifre :"), m_sifre1);
    form->addRow(QStringLiteral("Şifre (Tekrar) :"), m_sifre2);
    auto *kaydet = new QPushButton(QStringLiteral("K&aydet"), this);
    kaydet->setObjectName(QStringLiteral("cmdKaydet"));
    kaydet->setAutoDefault(true);
    auto *cikis = new QPushButton(QStringLiteral("Çı&kış"), this);
    cikis->setAutoDefault(false);
    auto *buttons = new QDialogButtonBox(this);
    buttons->addButton(kaydet, QDialogButtonBox::AcceptRole);
    buttons->addButton(cikis, QDialogButtonBox::RejectRole);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(info);
    layout->addLayout(form);
    layout->addWidget(buttons);
    setMinimumWidth(420);
    ui::moveWithEnter(this);
    connect(kaydet, &QPushButton::clicked, this, &FrmIlkKullanici::kaydet);
    connect(cikis, &QPushButton::clicked, this, &QDialog::reject);
}

void FrmIlkKullanici::kaydet()
{
    const QString ad = m_ad->text();
    if (ad.trimmed().isEmpty()) {
        ui::notify(QStringLiteral("UYARI"), QStringLiteral("Lütfen bir kullanıcı adı giriniz."),
                   ui::Icon::Warning, this);
        m_ad->setFocus();
        return;
    }
    if (m_sifre1->text().isEmpty()) {
        ui::notify(QStringLiteral("UYARI"), QStringLiteral("Lütfen bir şifre giriniz."),
                   ui::Icon::Warning, this);
        m_sifre1->setFocus();
        return;
    }
    if (m_sifre1->text() != m_sifre2->text()) {
        ui::notify(QStringLiteral("UYARI"),
                   QStringLiteral("Şifre ile tekrarı aynı değil. Lütfen şifreyi iki kez aynı "
                                  "giriniz."),
                   ui::Icon::Warning, this);
        m_sifre2->clear();
        m_sifre2->setFocus();
        return;
    }
    if (base::Status s = KullaniciKaydet(m_db, ad, m_sifre1->text()); !s) {
        ui::HataBildir(s.error());
        return;
    }
    accept();
}

} // namespace users
