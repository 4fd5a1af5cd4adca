#include "users/frm_sifre.h"

#include "ui/failure.h"
#include "ui/inputs.h"
#include "ui/message.h"
#include "users/login.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

namespace users {

namespace {
bool s_throttle = true;
}

void FrmSifre::setThrottleForTest(bool on)
{
    s_throttle = on;
}

FrmSifre::FrmSifre(store::Database &db, QWidget *parent)
    : QDialog(parent)
    , m_db(db)
{
    setObjectName(QStringLiteral("FrmSifre"));
    setWindowTitle(QStringLiteral("Programa Giriş Şifresi"));
    setModal(true);

    m_ad = new QLineEdit(this);
    m_ad->setObjectName(QStringLiteral("txtKullaniciAdi"));
    m_ad->setMaxLength(50);
    m_sifre = new QLineEdit(this);
    m_sifre->setObjectName(QStringLiteral("txtSifre"));
    m_sifre->setEchoMode(QLineEdit::Password);
    m_sifre->setMaxLength(50);

    auto *form = new QFormLayout;
    form->addRow(QStringLiteral("Kullanıcı Adı :"), m_ad);
    form->addRow(QStringLiteral("Şifre :"), m_sifre);

    // The wait after wrong logins: its line is kept even when empty, so that the window never
    // has to grow to show it.
    m_bekle = new QLabel(this);
    m_bekle->setObjectName(QStringLiteral("lblBekle"));
    m_bekle->setMinimumHeight(m_bekle->fontMetrics().height());

    m_tamam = new QPushButton(QStringLiteral("&Tamam"), this);
    m_tamam->setObjectName(QStringLiteral("CmdOk"));
    m_tamam->setAutoDefault(true);
    m_tamam->setDefault(true);
    auto *cikis = new QPushButton(QStringLiteral("Çı&kış"), this);
    cikis->setObjectName(QStringLiteral("CmdExit"));
    cikis->setAutoDefault(false);
    auto *buttons = new QDialogButtonBox(this);
    buttons->addButton(m_tamam, QDialogButtonBox::AcceptRole);
    buttons->addButton(cikis, QDialogButtonBox::RejectRole);

    auto *title = new QLabel(QStringLiteral("Zerna Vortel"), this);
    QFont f = title->font();
    f.setPointSizeF(f.pointSizeF() * 1.6);
    f.setBold(true);
    title->setFont(f);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(title);
    layout->addWidget(
        new QLabel(QStringLiteral("Programa girmek için kullanıcı adınızı ve şifrenizi "
                                  "yazınız."),
                   this));
    layout->addSpacing(6);
    layout->addLayout(form);
    layout->addWidget(m_bekle);
    layout->addWidget(buttons);
    setMinimumWidth(380);

    // Enter moves on like Tab; on the button it presses it.
    ui::moveWithEnter(this);
    // Ctrl+B in either box: the service user.
    m_ad->installEventFilter(this);
    m_sifre->installEventFilter(this);
    connect(m_tamam, &QPushButton::clicked, this, &FrmSifre::CmdOk_Click);
    connect(cikis, &QPushButton::clicked, this, &QDialog::reject);

    m_timer = new QTimer(this);
    m_timer->setInterval(1000);
    connect(m_timer, &QTimer::timeout, this, &FrmSifre::updateWait);
    m_ad->setFocus();
}

bool FrmSifre::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::KeyPress) {
        auto *key = static_cast<QKeyEvent *>(event);
        if (key->key() == Qt::Key_B && key->modifiers() == Qt::ControlModifier) {
            fillServiceUser();
            return true;
        }
    }
    return QDialog::eventFilter(watched, event);
}

void FrmSifre::fillServiceUser()
{
    m_ad->setText(QStringLiteral("Zerna"));
    m_sifre->setFocus();
}

void FrmSifre::updateWait()
{
    --m_kalan;
    if (m_kalan <= 0) {
        m_timer->stop();
        m_bekle->clear();
        return;
    }
    m_bekle->setText(
        QStringLiteral("Hatalı girişler nedeniyle lütfen %1 saniye bekleyiniz.").arg(m_kalan));
}

void FrmSifre::CmdOk_Click()
{
    const QString ad = m_ad->text();
    if (s_throttle) {
        if (const int wait = GirisBeklemesi(m_db, ad); wait > 0) {
            // "Tamam" stays where it is: were it disabled, Enter would move on to "Çıkış".
            m_kalan = wait + 1;
            updateWait();
            m_timer->start();
            m_sifre->setFocus();
            m_sifre->selectAll();
            return;
        }
    }
    const base::Result<GirisSonucu> sonuc = SifreKontrol(m_db, ad, m_sifre->text());
    if (!sonuc) {
        ui::HataBildir(sonuc.error());
        return;
    }
    switch (*sonuc) {
    case GirisSonucu::Kabul:
        GirisSonucuKaydet(m_db, ad, true);
        accept();
        return;
    case GirisSonucu::AdHatali:
        GirisSonucuKaydet(m_db, ad, false);
        ui::notify(QStringLiteral("UYARI"),
                   QStringLiteral("Kullanıcı Adı hatalı!\nGirilen ad ==> ") + ad,
                   ui::Icon::Critical, this);
        m_ad->setFocus();
        m_ad->selectAll();
        return;
    case GirisSonucu::SifreHatali:
        GirisSonucuKaydet(m_db, ad, false);
        // The typed password is never shown back.
        ui::notify(QStringLiteral("UYARI"), QStringLiteral("Kullanıcı Şifresi hatalı!"),
                   ui::Icon::Critical, this);
        m_sifre->clear();
        m_sifre->setFocus();
        return;
    }
}

} // namespace users
