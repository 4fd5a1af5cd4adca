#include "students/form_sinif_atlatma.h"

#include "store/schema.h"
#include "students/class_moves.h"
#include "students/student_record.h"
#include "ui/boxes.h"
#include "ui/failure.h"
#include "ui/grid.h"
#include "ui/message.h"
#include "ui/notifications.h"
#include "users/rights.h"

#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace students {

Form_Sinif_Atlatma::Form_Sinif_Atlatma(store::Database &db, QWidget *parent)
    : ui::Screen(QStringLiteral("Form_Sinif_Atlatma"), QStringLiteral("Sınıf Atlatma"), parent)
    , m_db(db)
{
    m_siniflar = new QComboBox(this);
    m_siniflar->setObjectName(QStringLiteral("siniflar"));
    m_siniflar->setMinimumWidth(110);
    m_siniflar2 = new QComboBox(this);
    m_siniflar2->setObjectName(QStringLiteral("siniflar2"));
    m_siniflar2->setEditable(true);
    m_siniflar2->setInsertPolicy(QComboBox::NoInsert);
    m_siniflar2->setMinimumWidth(110);
    m_siniflar2->lineEdit()->setMaxLength(store::schema::textSize(
        store::Store::Year, QStringLiteral("Ogrenci"), QStringLiteral("Ogr_Sinif")));

    m_grid = new ui::Grid(this);
    m_grid->setObjectName(QStringLiteral("vaSpread1"));
    m_grid->setColumns({
        {QString(), ui::ColumnKind::Check, 30},
        {QStringLiteral("NO"), ui::ColumnKind::Number, 70, false},
        {QStringLiteral(" AD"), ui::ColumnKind::Text, 150, false},
        {QStringLiteral("SOYAD"), ui::ColumnKind::Text, 150, false},
        {QStringLiteral("SINIF"), ui::ColumnKind::Text, 70, false},
        {QStringLiteral("DÖNEM"), ui::ColumnKind::Text, 90, false},
    });
    m_grid->horizontalHeader()->setStretchLastSection(true);

    auto *goster = ui::button(QStringLiteral("cmdGoster"), QStringLiteral("Öğrenci Göster "), this);
    auto *tumu = ui::button(QStringLiteral("cmdTumunuSec"), QStringLiteral("Tümünü Seç"), this);
    auto *hicbiri
        = ui::button(QStringLiteral("cmdTumunuKaldir"), QStringLiteral("Tümünü Kaldır"), this);
    auto *kaydet = ui::button(QStringLiteral("cmdKaydet"), QStringLiteral("KAYDET"), this);
    auto *cikis = ui::button(QStringLiteral("cmdCikis"), QStringLiteral("Çı&kış"), this);
    m_durum = new QLabel(this);
    m_durum->setObjectName(QStringLiteral("lblDurum"));

    auto *top = new QGridLayout;
    top->addWidget(new QLabel(QStringLiteral("Sınıf Seçimi"), this), 0, 0);
    top->addWidget(m_siniflar, 0, 1);
    top->addWidget(goster, 0, 2);
    top->addWidget(new QLabel(QStringLiteral("Yeni Sınıf Seçimi"), this), 1, 0);
    top->addWidget(m_siniflar2, 1, 1);
    top->setColumnStretch(3, 1);
    auto *ticks = new QHBoxLayout;
    ticks->addWidget(tumu);
    ticks->addWidget(hicbiri);
    ticks->addWidget(m_durum, 1);
    ticks->addWidget(kaydet);
    ticks->addWidget(cikis);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(top);
    layout->addWidget(m_grid, 1);
    layout->addLayout(ticks);
    ui::setTabOrder({m_siniflar, goster, m_siniflar2, m_grid, tumu, hicbiri, kaydet, cikis});
    resize(640, 520);

    connect(goster, &QPushButton::clicked, this, &Form_Sinif_Atlatma::OgrenciGoster);
    connect(tumu, &QPushButton::clicked, this, [this] { TumunuSec(true); });
    connect(hicbiri, &QPushButton::clicked, this, [this] { TumunuSec(false); });
    connect(kaydet, &QPushButton::clicked, this, [this] { Kaydet(); });
    connect(cikis, &QPushButton::clicked, this, &ui::Screen::closeWindow);

    SinifDoldur();
}

void Form_Sinif_Atlatma::SinifDoldur()
{
    base::Result<QStringList> classes = FarkliDegerler(
        m_db, QStringLiteral("Ogr_Sinif"), true, QStringLiteral("Form_Sinif_Atlatma:SinifDoldur"));
    if (!classes) {
        ui::HataBildir(classes.error());
        return;
    }
    const QString first = m_siniflar->currentText();
    const QString second = m_siniflar2->currentText();
    m_siniflar->clear();
    m_siniflar->addItems(*classes);
    m_siniflar2->clear();
    m_siniflar2->addItems(*classes);
    const int i = m_siniflar->findText(first);
    m_siniflar->setCurrentIndex(qMax(0, i));
    m_siniflar2->setCurrentIndex(-1);
    m_siniflar2->setEditText(second);
}

void Form_Sinif_Atlatma::OgrenciGoster()
{
    const QString sinif = m_siniflar->currentText();
    base::Result<QList<SinifOgrencisi>> rows
        = SinifOgrencileri(m_db, sinif, QStringLiteral("Form_Sinif_Atlatma:OgrenciGoster"));
    if (!rows) {
        ui::HataBildir(rows.error());
        return;
    }
    m_gosterilen = sinif;
    m_listeVar = true;
    m_grid->clearRows();
    for (const SinifOgrencisi &s : *rows) {
        const int r = m_grid->appendRow();
        m_grid->setValue(r, Sec, true);
        m_grid->setValue(r, No, s.numara);
        m_grid->setValue(r, Ad, s.adi);
        m_grid->setValue(r, Soyad, s.soyadi);
        m_grid->setValue(r, Sinif, s.sinif);
        m_grid->setValue(r, Donem, s.donem);
    }
    m_durum->setText(QStringLiteral("%1 öğrenci").arg(rows->size()));
}

void Form_Sinif_Atlatma::TumunuSec(bool secili)
{
    for (int r = 0; r < m_grid->rowCount(); ++r) {
        m_grid->setValue(r, Sec, secili);
    }
}

bool Form_Sinif_Atlatma::Kaydet()
{
    if (!ui::YazmaYetkisiVar() || !m_listeVar) {
        return false;
    }
    QList<qint64> numbers;
    for (int r = 0; r < m_grid->rowCount(); ++r) {
        if (m_grid->checked(r, Sec)) {
            numbers << m_grid->number(r, No);
        }
    }
    if (numbers.isEmpty()) {
        return false;
    }
    const QString yeni = m_siniflar2->currentText().trimmed();
    base::Result<QList<qint64>> moved = SinifAtlat(m_db, m_gosterilen, yeni, numbers);
    if (!moved) {
        ui::HataBildir(moved.error());
        return false;
    }
    for (const qint64 key : *moved) {
        emit ui::Bildirimler::instance().ogrenciDegisti(key);
    }
    SinifDoldur();
    // The list shows what is left of the old class, if anything is.
    const int from = m_siniflar->findText(m_gosterilen);
    if (from >= 0) {
        m_siniflar->setCurrentIndex(from);
        OgrenciGoster();
    } else {
        m_grid->clearRows();
        m_listeVar = false;
    }
    m_durum->setText(
        QStringLiteral("%1 öğrenci \"%2\" sınıfına geçirildi.").arg(moved->size()).arg(yeni));
    return true;
}

} // namespace students
