#include "users/frm_programa_giris_sifresi_degistirme.h"

#include "ui/boxes.h"
#include "ui/failure.h"
#include "ui/inputs.h"
#include "ui/message.h"
#include "users/login.h"
#include "users/passwords.h"
#include "users/user_admin.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

namespace users {

FrmProgramaGirisSifresiDegistirme::FrmProgramaGirisSifresiDegistirme(store::Database &db,
                                                                     QWidget *parent)
    : ui::Screen(QStringLiteral("FrmProgramaGirisSifresiDegistirme"),
                 QStringLiteral("Programa Giriş Şifresi Değiştirme"), parent)
    , m_db(db)
{
    m_list = new QListWidget(this);
    m_list->setObjectName(QStringLiteral("ListUsername"));
    m_ad = new QLineEdit(this);
    m_ad->setObjectName(QStringLiteral("txtUsername"));
    m_ad->setMaxLength(50);
    m_sifre = ui::passwordBox(QStringLiteral("txtPassword"), this);
    m_sifre2 = ui::passwordBox(QStringLiteral("txtPassword2"), this);
    auto *form = new QFormLayout;
    form->addRow(QStringLiteral("Kullanıcı Adı :"), m_ad);
    form->addRow(QStringLiteral("Yeni Şifre :"), m_sifre);
    form->addRow(QStringLiteral("Yeni Şifre (Tekrar) :"), m_sifre2);
    auto *kaydet = ui::button(QStringLiteral("cmdKaydet"), QStringLiteral("K&aydet"), this);
    auto *sil = ui::button(QStringLiteral("cmdSil"), QStringLiteral("&Sil"), this);
    auto *cikis = new QPushButton(QStringLiteral("Çı&kış"), this);
    auto *buttons = new QHBoxLayout;
    buttons->addWidget(sil);
    buttons->addStretch();
    buttons->addWidget(kaydet);
    buttons->addWidget(cikis);
    auto *side = new QVBoxLayout;
    side->addLayout(form);
    side->addWidget(new QLabel(QStringLiteral("Kayıtlı şifreler gösterilmez; yeni şifreyi iki kez "
                                              "yazarak verebilirsiniz."),
                               this));
    side->addStretch();
    auto *top = new QHBoxLayout;
    top->addWidget(m_list, 1);
    top->addLayout(side, 2);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(top);
    layout->addLayout(buttons);
    resize(620, 340);
    ui::moveWithEnter(this);
    connect(m_list, &QListWidget::currentTextChanged, this, [this](const QString &name) {
        m_ad->setText(name);
        m_sifre->clear();
        m_sifre2->clear();
    });
    connect(kaydet, &QPushButton::clicked, this,
            &FrmProgramaGirisSifresiDegistirme::CmdKaydet_Click);
    connect(sil, &QPushButton::clicked, this, &FrmProgramaGirisSifresiDegistirme::CmdSil_Click);
    connect(cikis, &QPushButton::clicked, this, &QWidget::close);
    KullaniciAdiYukle();
}

void FrmProgramaGirisSifresiDegistirme::KullaniciAdiYukle()
{
    base::Result<QList<KullaniciSatiri>> users = KullanicilariOku(m_db);
    if (!users) {
        ui::HataBildir(users.error().withLabel(
            QStringLiteral("FrmProgramaGirisSifresiDegistirme:KullaniciAdiYukle")));
        return;
    }
    m_list->clear();
    // Each name keeps the form table Sifre holds it in, so that a name scrambled on the old
    // program's other provider is found again.
    for (const KullaniciSatiri &u : std::as_const(*users)) {
        auto *item = new QListWidgetItem(u.ad, m_list);
        item->setData(Qt::UserRole, u.kod);
    }
    if (users->isEmpty()) {
        ui::notify(
            QStringLiteral("UYARI"),
            QStringLiteral("Tanımlı hiç bir kullanıcı bulunamadı.\nLütfen yeni bir kullanıcı "
                           "tanımlayınız."),
            ui::Icon::Warning, this);
    }
}

void FrmProgramaGirisSifresiDegistirme::CmdKaydet_Click()
{
    const QString ad = m_ad->text();
    if (ad.trimmed().isEmpty())
        return;
    if (!ui::YazmaYetkisiVar())
        return;
    if (m_sifre->text() != m_sifre2->text()) {
        ui::notify(QStringLiteral("Uyarı"),
                   QStringLiteral("Geçersiz veya yanlış şifre tanımlaması."), ui::Icon::Warning,
                   this);
        return;
    }
    if (base::Status s = KullaniciKaydet(m_db, ad, m_sifre->text()); !s) {
        ui::HataBildir(s.error());
        return;
    }
    m_sifre->clear();
    m_sifre2->clear();
    KullaniciAdiYukle();
}

void FrmProgramaGirisSifresiDegistirme::CmdSil_Click()
{
    const QString ad = m_ad->text();
    if (ad.trimmed().isEmpty() || !ui::YazmaYetkisiVar())
        return;
    QString kod = Sifrele(ad).value_or(QString());
    for (int i = 0; i < m_list->count(); ++i) {
        if (m_list->item(i)->text() == ad)
            kod = m_list->item(i)->data(Qt::UserRole).toString();
    }
    if (base::Status s = KullaniciSil(m_db, kod); !s) {
        ui::HataBildir(
            s.error().withLabel(QStringLiteral("FrmProgramaGirisSifresiDegistirme:CmdSil_Click")));
        return;
    }
    m_ad->clear();
    KullaniciAdiYukle();
}

} // namespace users
