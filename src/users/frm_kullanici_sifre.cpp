#include "users/frm_kullanici_sifre.h"

#include "store/database.h"
#include "ui/boxes.h"
#include "ui/failure.h"
#include "ui/grid.h"
#include "ui/inputs.h"
#include "ui/message.h"
#include "users/login.h"
#include "users/passwords.h"
#include "users/record_lock.h"
#include "users/rights.h"

#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace users {

namespace {

// Columns of the users grid and of the rights grid.
enum { KullaniciAdi = 0, Sifresi = 1, Kod = 2 };
enum { HakAdi = 0, HakOkuma = 1, HakYazma = 2, HakAraci = 3 };

const QString s_mask = QStringLiteral("••••••");

} // namespace

Kullanici_Sifre::Kullanici_Sifre(store::Database &db, QWidget *parent)
    : ui::Screen(QStringLiteral("Kullanici_Sifre"),
                 QStringLiteral("Kullanıcı Belirleme ve Şifre Verme"), parent)
    , m_db(db)
{
    setChangeQuestion(QStringLiteral("Değişen Bilgiler Var !"),
                      QStringLiteral("Değişen Bilgileri Kaydedeyim mi?"));

    m_vaSpread1 = new ui::Grid(this);
    m_vaSpread1->setObjectName(QStringLiteral("vaSpread1"));
    m_vaSpread1->setColumns(
        {ui::GridColumn{QStringLiteral("Kullanıcı"), ui::ColumnKind::Text, 170, true, false, 50},
         ui::GridColumn{QStringLiteral("Şifresi"), ui::ColumnKind::Text, 90, false},
         ui::GridColumn{QStringLiteral("Kod"), ui::ColumnKind::Text, 10, false, true}});
    m_vaSpread1->horizontalHeader()->setSectionResizeMode(KullaniciAdi, QHeaderView::Stretch);
    m_vaSpread1->setMinimumWidth(300);

    auto *ekle = ui::button(QStringLiteral("Command2"), QStringLiteral("&EKLE"), this);
    auto *sil = ui::button(QStringLiteral("Command1"), QStringLiteral("&SİL"), this);
    auto *userButtons = new QHBoxLayout;
    userButtons->addWidget(ekle);
    userButtons->addWidget(sil);
    userButtons->addStretch();

    auto *sifre = new QGroupBox(QStringLiteral("Şifre"), this);
    m_eski = ui::passwordBox(QStringLiteral("Txt_Eski"), sifre);
    m_yeni1 = ui::passwordBox(QStringLiteral("Txt_Yeni1"), sifre);
    m_yeni2 = ui::passwordBox(QStringLiteral("Txt_Yeni2"), sifre);
    auto *degistir = ui::button(QStringLiteral("Cmd_Ok"), QStringLiteral("Şifreyi &Ver"), sifre);
    auto *sf = new QFormLayout(sifre);
    sf->addRow(QStringLiteral("Eski Şifre"), m_eski);
    sf->addRow(QStringLiteral("Yeni Şifre"), m_yeni1);
    sf->addRow(QStringLiteral("Doğrulama"), m_yeni2);
    sf->addRow(QString(), degistir);

    auto *left = new QVBoxLayout;
    left->addWidget(new QLabel(QStringLiteral("Kullanıcılar"), this));
    left->addWidget(m_vaSpread1, 1);
    left->addLayout(userButtons);
    left->addWidget(sifre);

    m_vaSpread2 = new ui::Grid(this);
    m_vaSpread2->setObjectName(QStringLiteral("vaSpread2"));
    m_vaSpread2->setColumns(
        {ui::GridColumn{QStringLiteral("Program"), ui::ColumnKind::Text, 280, false},
         ui::GridColumn{QStringLiteral("Okuma"), ui::ColumnKind::Check, 56},
         ui::GridColumn{QStringLiteral("Yazma"), ui::ColumnKind::Check, 56},
         // The command's tool name is the key the row is saved under, never shown.
         ui::GridColumn{QStringLiteral("Araç Adı"), ui::ColumnKind::Text, 200, false, true}});
    m_vaSpread2->horizontalHeader()->setSectionResizeMode(HakAdi, QHeaderView::Stretch);
    m_okuma = ui::button(QStringLiteral("Command3"), QStringLiteral("&Okuma İşaretli  "), this);
    m_yazma = ui::button(QStringLiteral("Command4"), QStringLiteral("Ya&zma İşaretli  "), this);
    auto *toggles = new QHBoxLayout;
    toggles->addWidget(m_okuma);
    toggles->addWidget(m_yazma);
    toggles->addStretch();
    auto *right = new QVBoxLayout;
    right->addWidget(new QLabel(QStringLiteral("Seçilen kullanıcının hakları"), this));
    right->addWidget(m_vaSpread2, 1);
    right->addLayout(toggles);

    auto *kilit = ui::button(QStringLiteral("cmdKilitKaldir"),
                             QStringLiteral("Öğrenci Ki&litlerini Kaldır"), this);
    kilit->setToolTip(
        QStringLiteral("Kapanmadan kalmış bir programın öğrenciler üzerinde bıraktığı "
                       "işlem işaretlerini kaldırır."));
    auto *kaydet = ui::button(QStringLiteral("cmdKaydet"), QStringLiteral("K&aydet"), this);
    auto *cikis = ui::button(QStringLiteral("cmdCikis"), QStringLiteral("Çı&kış"), this);
    auto *bottom = new QHBoxLayout;
    bottom->addWidget(kilit);
    bottom->addStretch();
    bottom->addWidget(kaydet);
    bottom->addWidget(cikis);

    auto *columns = new QHBoxLayout;
    columns->addLayout(left, 2);
    columns->addLayout(right, 3);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(columns, 1);
    layout->addLayout(bottom);
    resize(1000, 560);

    connect(ekle, &QPushButton::clicked, this, &Kullanici_Sifre::Command2_Click);
    connect(sil, &QPushButton::clicked, this, &Kullanici_Sifre::Command1_Click);
    connect(m_okuma, &QPushButton::clicked, this, &Kullanici_Sifre::Command3_Click);
    connect(m_yazma, &QPushButton::clicked, this, &Kullanici_Sifre::Command4_Click);
    connect(degistir, &QPushButton::clicked, this, &Kullanici_Sifre::Cmd_Ok_Click);
    connect(kaydet, &QPushButton::clicked, this, [this] { Kaydet(); });
    connect(kilit, &QPushButton::clicked, this, &Kullanici_Sifre::KilitleriKaldir);
    connect(cikis, &QPushButton::clicked, this, &QWidget::close);
    connect(m_vaSpread1->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            [this](const QModelIndex &current) { userChosen(current.row()); });
    connect(m_vaSpread1, &ui::Grid::cellEdited, this, &Kullanici_Sifre::userEdited);
    connect(m_vaSpread2, &ui::Grid::cellEdited, this, [this] {
        if (!m_filling)
            setDirty(true);
    });
    KullaniciYukle();
}

void Kullanici_Sifre::KullaniciYukle()
{
    base::Result<QList<KullaniciSatiri>> users = KullanicilariOku(m_db);
    if (!users) {
        ui::HataBildir(users.error());
        return;
    }
    m_users = *users;
    m_rights.clear();
    m_shownUser = -1;
    showUsers();
    if (!m_users.isEmpty())
        m_vaSpread1->setCurrentCell(0, KullaniciAdi);
    setDirty(false);
}

void Kullanici_Sifre::showUsers()
{
    m_filling = true;
    m_vaSpread1->clearRows();
    for (const KullaniciSatiri &u : std::as_const(m_users)) {
        const int row = m_vaSpread1->appendRow();
        m_vaSpread1->setValue(row, KullaniciAdi, u.ad);
        // A password is never shown, whatever form it is kept in.
        const bool has = u.sifreVar || (u.sifreDegisti && !u.yeniSifre.isEmpty());
        m_vaSpread1->setValue(row, Sifresi, has ? s_mask : QString());
        m_vaSpread1->setValue(row, Kod, u.kod);
    }
    m_filling = false;
}

QString Kullanici_Sifre::rightsKey(int row) const
{
    const KullaniciSatiri &u = m_users.at(row);
    return u.kod.isEmpty() ? u.ad : u.kod;
}

void Kullanici_Sifre::keepRights()
{
    if (m_shownUser < 0 || m_shownUser >= m_users.size())
        return;
    QList<HakSatiri> rows;
    for (int r = 0; r < m_vaSpread2->rowCount(); ++r) {
        rows.append(HakSatiri{m_vaSpread2->text(r, HakAraci), m_vaSpread2->text(r, HakAdi),
                              m_vaSpread2->checked(r, HakOkuma),
                              m_vaSpread2->checked(r, HakYazma)});
    }
    m_rights.insert(rightsKey(m_shownUser), rows);
}

void Kullanici_Sifre::userChosen(int row)
{
    if (row == m_shownUser || m_filling)
        return;
    keepRights();
    m_shownUser = row;
    m_eski->clear();
    m_yeni1->clear();
    m_yeni2->clear();
    if (row < 0 || row >= m_users.size()) {
        m_vaSpread2->clearRows();
        return;
    }
    QList<HakSatiri> rows;
    const auto kept = m_rights.constFind(rightsKey(row));
    if (kept != m_rights.constEnd()) {
        rows = *kept;
    } else {
        base::Result<QList<HakSatiri>> read = HaklariOku(m_db, m_users[row].kod);
        if (!read) {
            ui::HataBildir(read.error());
            return;
        }
        rows = *read;
    }
    m_filling = true;
    m_vaSpread2->clearRows();
    for (const HakSatiri &h : std::as_const(rows)) {
        const int r = m_vaSpread2->appendRow();
        m_vaSpread2->setValue(r, HakAdi, h.caption);
        m_vaSpread2->setValue(r, HakOkuma, h.okuma);
        m_vaSpread2->setValue(r, HakYazma, h.yazma);
        m_vaSpread2->setValue(r, HakAraci, h.tool);
    }
    m_filling = false;
}

void Kullanici_Sifre::userEdited(int row, int column)
{
    if (m_filling || column != KullaniciAdi || row < 0 || row >= m_users.size())
        return;
    // The rights kept for a user not saved yet follow his name.
    const QString oldKey = rightsKey(row);
    m_users[row].ad = m_vaSpread1->text(row, KullaniciAdi);
    if (m_users[row].kod.isEmpty() && m_rights.contains(oldKey))
        m_rights.insert(rightsKey(row), m_rights.take(oldKey));
    setDirty(true);
}

void Kullanici_Sifre::Command2_Click()
{
    // The last row must be whole before another is added.
    if (!m_users.isEmpty()) {
        const QString refusal = KayitTus(m_users, int(m_users.size()) - 1);
        if (!refusal.isEmpty()) {
            ui::notify(QStringLiteral("Uyarı"), refusal, ui::Icon::Warning, this);
            m_vaSpread1->setCurrentCell(int(m_users.size()) - 1, KullaniciAdi);
            return;
        }
    }
    keepRights();
    m_users.append(KullaniciSatiri{});
    showUsers();
    const int row = int(m_users.size()) - 1;
    m_shownUser = -1;
    m_vaSpread1->setCurrentCell(row, KullaniciAdi);
    m_vaSpread1->setFocus();
    m_vaSpread1->edit(m_vaSpread1->currentIndex());
    setDirty(true);
}

void Kullanici_Sifre::Command1_Click()
{
    const int row = m_vaSpread1->currentRowIndex();
    if (row < 0 || row >= m_users.size())
        return;
    if (!ui::YazmaYetkisiVar())
        return;
    const KullaniciSatiri u = m_users[row];
    if (!ui::askBeforeLosing(QStringLiteral("Uyarı"),
                             u.ad + QStringLiteral(" kullanıcısını silmek istiyor musunuz?"),
                             this)) {
        return;
    }
    if (!u.kod.isEmpty()) {
        if (base::Status s = KullaniciSil(m_db, u.kod); !s) {
            ui::HataBildir(s.error());
            return;
        }
    }
    m_rights.remove(rightsKey(row));
    m_users.removeAt(row);
    m_shownUser = -1;
    showUsers();
    if (!m_users.isEmpty())
        m_vaSpread1->setCurrentCell(qMin(row, int(m_users.size()) - 1), KullaniciAdi);
    else
        m_vaSpread2->clearRows();
}

void Kullanici_Sifre::Command3_Click()
{
    const bool mark = m_okuma->text().startsWith(QStringLiteral("&Okuma İşaretli"));
    for (int r = 0; r < m_vaSpread2->rowCount(); ++r)
        m_vaSpread2->setValue(r, HakOkuma, mark);
    m_okuma->setText(mark ? QStringLiteral("&Okuma İşaretsiz")
                          : QStringLiteral("&Okuma İşaretli  "));
    setDirty(true);
}

void Kullanici_Sifre::Command4_Click()
{
    const bool mark = m_yazma->text().startsWith(QStringLiteral("Ya&zma İşaretli"));
    for (int r = 0; r < m_vaSpread2->rowCount(); ++r)
        m_vaSpread2->setValue(r, HakYazma, mark);
    m_yazma->setText(mark ? QStringLiteral("Ya&zma İşaretsiz")
                          : QStringLiteral("Ya&zma İşaretli  "));
    setDirty(true);
}

void Kullanici_Sifre::Cmd_Ok_Click()
{
    const int row = m_vaSpread1->currentRowIndex();
    if (row < 0 || row >= m_users.size())
        return;
    KullaniciSatiri &u = m_users[row];
    // The old password is the one the cell stands for: the new one given in this sitting, or
    // the stored one.
    const bool oldMatches = u.sifreDegisti
                                ? m_eski->text() == u.yeniSifre
                                : (u.kod.isEmpty() ? m_eski->text().isEmpty()
                                                   : SifreDogru(m_db, u.kod, m_eski->text()));
    if (!oldMatches || m_yeni1->text().isEmpty() || m_yeni1->text() != m_yeni2->text()) {
        ui::notify(QStringLiteral("Uyarı"),
                   QStringLiteral("Geçersiz veya yanlış şifre tanımlaması."), ui::Icon::Warning,
                   this);
        m_eski->clear();
        m_yeni1->clear();
        m_yeni2->clear();
        m_eski->setFocus();
        return;
    }
    u.yeniSifre = m_yeni1->text();
    u.sifreDegisti = true;
    m_vaSpread1->setValue(row, Sifresi, s_mask);
    m_eski->clear();
    m_yeni1->clear();
    m_yeni2->clear();
    setDirty(true);
}

bool Kullanici_Sifre::Kaydet()
{
    if (!ui::YazmaYetkisiVar())
        return false;
    keepRights();
    for (int row = 0; row < m_users.size(); ++row) {
        const QString refusal = KayitTus(m_users, row);
        if (!refusal.isEmpty()) {
            ui::notify(QStringLiteral("Uyarı"), refusal, ui::Icon::Warning, this);
            m_vaSpread1->setCurrentCell(row, KullaniciAdi);
            return false;
        }
    }
    if (base::Status s = KullanicilariKaydet(m_db, m_users, m_rights); !s) {
        ui::HataBildir(s.error());
        return false;
    }
    ui::notify(QStringLiteral("Bilgi"), QStringLiteral("Kullanıcılar ve hakları kaydedildi."),
               ui::Icon::Information, this);
    const QString chosen = m_vaSpread1->currentRowIndex() >= 0
                               ? m_users[m_vaSpread1->currentRowIndex()].ad
                               : QString();
    KullaniciYukle();
    for (int row = 0; row < m_users.size(); ++row) {
        if (m_users[row].ad == chosen)
            m_vaSpread1->setCurrentCell(row, KullaniciAdi);
    }
    return true;
}

void Kullanici_Sifre::KilitleriKaldir()
{
    if (!ui::YazmaYetkisiVar())
        return;
    if (!ui::askBeforeLosing(
            QStringLiteral("Uyarı"),
            QStringLiteral("Öğrenciler üzerindeki bütün işlem işaretleri kaldırılacak. Başka "
                           "bir iş istasyonunda açık öğrenci olmadığından emin misiniz?"),
            this)) {
        return;
    }
    if (base::Status s = OgrenciKilitBirak(m_db, true); !s) {
        ui::HataBildir(s.error());
        return;
    }
    ui::notify(QStringLiteral("Bilgi"),
               QStringLiteral("Öğrenciler üzerindeki işlem işaretleri kaldırıldı."),
               ui::Icon::Information, this);
}

} // namespace users
