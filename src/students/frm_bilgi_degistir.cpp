#include "students/frm_bilgi_degistir.h"

#include "base/turkish_text.h"
#include "ui/boxes.h"
#include "ui/failure.h"
#include "ui/inputs.h"
#include "ui/message.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace students {

namespace {

// The four values, in the order of their rows: the field each is kept in, its caption, the
// caption of its new value and the name of the box that takes it.
struct Satir
{
    const char *alan;
    const char *etiket;
    const char *yeniEtiket;
    const char *kutu;
};
const Satir s_satirlar[] = {
    {"Ogr_Numarasi", "Öğrenci Numarası", "Yeni Öğrenci Numarası", "txtYeniNumara"},
    {"Ogr_Adi", "Adı", "Yeni Adı", "txtYeniAdi"},
    {"Ogr_Soyadi", "Soyadı", "Yeni Soyadı", "txtYeniSoyadi"},
    {"Ogr_Sinif", "Sınıfı", "Yeni Sınıfı", "txtYeniSinif"},
};

} // namespace

FrmBilgiDegistir::FrmBilgiDegistir(store::Database &db, qint64 kayitId, const Kimlik &eski,
                                   QWidget *parent)
    : QDialog(parent)
    , m_db(db)
    , m_kayitId(kayitId)
    , m_eski(eski)
{
    setObjectName(QStringLiteral("FrmBilgiDegistir"));
    setWindowTitle(QStringLiteral("Numara Ad Soyad Sınıf Değiştirme"));
    const QStringList oldValues = {QString::number(eski.numara), eski.adi, eski.soyadi, eski.sinif};
    auto *grid = new QGridLayout;
    grid->addWidget(new QLabel(QStringLiteral("<b>Eski Bilgiler</b>"), this), 0, 1);
    grid->addWidget(new QLabel(QStringLiteral("<b>Yeni Bilgiler</b>"), this), 0, 3);
    for (int i = 0; i < 4; ++i) {
        const Satir &s = s_satirlar[i];
        auto *old = new QLabel(oldValues.at(i), this);
        old->setFrameShape(QFrame::StyledPanel);
        old->setMinimumWidth(140);
        auto *box = new QLineEdit(oldValues.at(i), this);
        box->setObjectName(QString::fromLatin1(s.kutu));
        box->setMaxLength(OgrenciAlaniBul(QString::fromLatin1(s.alan))->boyut);
        box->setMinimumWidth(160);
        grid->addWidget(new QLabel(QString::fromUtf8(s.etiket) + QStringLiteral(" :"), this), i + 1,
                        0);
        grid->addWidget(old, i + 1, 1);
        grid->addWidget(new QLabel(QString::fromUtf8(s.yeniEtiket) + QStringLiteral(" :"), this),
                        i + 1, 2);
        grid->addWidget(box, i + 1, 3);
        m_kutular << box;
    }
    auto *ok = ui::button(QStringLiteral("cmdDegistir"), QStringLiteral("&Değiştir"), this);
    auto *cancel = ui::button(QStringLiteral("cmdIptal"), QStringLiteral("İ&ptal"), this);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(ok);
    buttons->addWidget(cancel);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(grid);
    layout->addLayout(buttons);
    ui::moveWithEnter(this);

    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(ok, &QPushButton::clicked, this, &FrmBilgiDegistir::degistir);
}

void FrmBilgiDegistir::degistir()
{
    const QList<QLineEdit *> &boxes = m_kutular;
    for (int i = 0; i < 4; ++i) {
        if (boxes.at(i)->text().trimmed().isEmpty()) {
            ui::notify(QStringLiteral("Dikkat"),
                       QString::fromUtf8(s_satirlar[i].yeniEtiket)
                           + QStringLiteral(" girilmedi. Lütfen bilgilerinizi eksiksiz giriniz."),
                       ui::Icon::Warning, this);
            boxes.at(i)->setFocus();
            return;
        }
    }
    const std::optional<qint64> n = base::TamSayiCoz(boxes.at(0)->text());
    if (!n || !OgrenciNoGecerli(*n)) {
        ui::notify(QStringLiteral("Dikkat"),
                   QStringLiteral("\"%1\" geçerli bir öğrenci numarası değil. Yeni Öğrenci "
                                  "Numarası olarak yalnız rakam giriniz.")
                       .arg(boxes.at(0)->text().trimmed()),
                   ui::Icon::Warning, this);
        boxes.at(0)->setFocus();
        return;
    }
    const Kimlik &eski = m_eski;
    const Kimlik yeni{*n, boxes.at(1)->text().trimmed(), boxes.at(2)->text().trimmed(),
                      boxes.at(3)->text().trimmed()};
    if (yeni.numara == eski.numara && yeni.adi == eski.adi && yeni.soyadi == eski.soyadi
        && yeni.sinif == eski.sinif) {
        accept();
        return;
    }
    if (!ui::YazmaYetkisiVar()) {
        return;
    }
    base::Result<int> r = students::OgrenciBilgiDegistir(m_db, m_kayitId, eski, yeni);
    if (!r) {
        ui::HataBildir(r.error());
        return;
    }
    if (*r == 0) {
        ui::notify(QStringLiteral("Dikkat"),
                   QStringLiteral("Öğrencinin kayıtlı bilgileri bu arada değişmiş; değişiklik "
                                  "yapılmadı."),
                   ui::Icon::Warning, this);
        reject();
        return;
    }
    m_degisti = true;
    accept();
}

} // namespace students
