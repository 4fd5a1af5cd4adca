#include "students/frm_toplu_sinif_degistirme.h"

#include "store/schema.h"
#include "students/class_moves.h"
#include "students/student_record.h"
#include "ui/boxes.h"
#include "ui/failure.h"
#include "ui/grid.h"
#include "ui/message.h"
#include "ui/notifications.h"
#include "users/rights.h"

#include <QCloseEvent>
#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace students {

FrmTopluSinifDegistirme::FrmTopluSinifDegistirme(store::Database &db, QWidget *parent)
    : ui::Screen(QStringLiteral("FrmTopluSinifDegistirme"),
                 QStringLiteral("Toplu Sınıf Değiştirmek"), parent)
    , m_db(db)
{
    m_combo1 = new QComboBox(this);
    m_combo1->setObjectName(QStringLiteral("Combo1"));
    m_combo1->setMinimumWidth(110);
    m_combo2 = new QComboBox(this);
    m_combo2->setObjectName(QStringLiteral("Combo2"));
    m_combo2->setEditable(true);
    m_combo2->setInsertPolicy(QComboBox::NoInsert);
    m_combo2->setMinimumWidth(110);
    m_combo2->lineEdit()->setMaxLength(store::schema::textSize(
        store::Store::Year, QStringLiteral("Ogrenci"), QStringLiteral("Ogr_Sinif")));

    m_grid = new ui::Grid(this);
    m_grid->setObjectName(QStringLiteral("vaSpread1"));
    m_grid->setColumns({
        {QStringLiteral("Öğr.No"), ui::ColumnKind::Number, 70, false},
        {QStringLiteral("Adı"), ui::ColumnKind::Text, 150, false},
        {QStringLiteral("Soyadı"), ui::ColumnKind::Text, 150, false},
        {QStringLiteral("Sınıfı"), ui::ColumnKind::Text, 80, false},
        {QStringLiteral("Seç"), ui::ColumnKind::Check, 40},
        {QStringLiteral("KayitID"), ui::ColumnKind::Number, 60, false, true},
    });
    m_grid->horizontalHeader()->setSectionResizeMode(Soyad, QHeaderView::Stretch);

    auto *goster = ui::button(QStringLiteral("cmdGoster"), QStringLiteral("Öğrenci &Göster"), this);
    auto *isaretli
        = ui::button(QStringLiteral("cmdTumuIsaretli"), QStringLiteral("Tümü İşaret&li"), this);
    auto *isaretsiz
        = ui::button(QStringLiteral("cmdTumuIsaretsiz"), QStringLiteral("Tümü İşaretsi&z"), this);
    auto *tasi = ui::button(QStringLiteral("cmdTasi"),
                            QStringLiteral("İşaretli Öğrencilere Yeni Sınıfı Taşı"), this);
    auto *kayit = ui::button(QStringLiteral("cmdKayit"), QStringLiteral("Ka&yıt"), this);
    auto *cikis = ui::button(QStringLiteral("cmdCikis"), QStringLiteral("Çı&kış"), this);
    m_durum = new QLabel(this);
    m_durum->setObjectName(QStringLiteral("lblDurum"));

    auto *top = new QGridLayout;
    top->addWidget(new QLabel(QStringLiteral(" Sınıf : "), this), 0, 0);
    top->addWidget(m_combo1, 0, 1);
    top->addWidget(goster, 0, 2);
    top->addWidget(new QLabel(QStringLiteral(" Yeni Atanacak Sınıf : "), this), 1, 0);
    top->addWidget(m_combo2, 1, 1);
    top->addWidget(tasi, 1, 2);
    top->setColumnStretch(3, 1);
    auto *bottom = new QHBoxLayout;
    bottom->addWidget(isaretli);
    bottom->addWidget(isaretsiz);
    bottom->addWidget(m_durum, 1);
    bottom->addWidget(kayit);
    bottom->addWidget(cikis);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(top);
    layout->addWidget(m_grid, 1);
    layout->addLayout(bottom);
    ui::setTabOrder({m_combo1, goster, m_combo2, tasi, m_grid, isaretli, isaretsiz, kayit, cikis});
    resize(660, 520);

    connect(goster, &QPushButton::clicked, this, &FrmTopluSinifDegistirme::OgrenciGetir);
    connect(isaretli, &QPushButton::clicked, this, [this] { TumuIsaretli(true); });
    connect(isaretsiz, &QPushButton::clicked, this, [this] { TumuIsaretli(false); });
    connect(tasi, &QPushButton::clicked, this, &FrmTopluSinifDegistirme::YeniSinifiTasi);
    connect(kayit, &QPushButton::clicked, this, [this] { Kayit(); });
    connect(cikis, &QPushButton::clicked, this, &ui::Screen::closeWindow);

    SinifCombo();
}

void FrmTopluSinifDegistirme::SinifCombo()
{
    base::Result<QStringList> classes
        = FarkliDegerler(m_db, QStringLiteral("Ogr_Sinif"), true,
                         QStringLiteral("FrmTopluBorcTanimiDegistirme:SinifCombo"));
    if (!classes) {
        ui::HataBildir(classes.error());
        return;
    }
    const QString first = m_combo1->currentText();
    const QString second = m_combo2->currentText();
    m_combo1->clear();
    m_combo1->addItems(*classes);
    m_combo1->setCurrentIndex(qMax(0, m_combo1->findText(first)));
    m_combo2->clear();
    m_combo2->addItems(*classes);
    m_combo2->setCurrentIndex(-1);
    m_combo2->setEditText(second);
}

void FrmTopluSinifDegistirme::OgrenciGetir()
{
    // Moves put into the list and not written would be lost with it.
    if (isDirty()) {
        if (ui::askYesNo(QStringLiteral("UYARI"),
                         QStringLiteral("Yapılan değişiklikleri kaydetmek istiyor musunuz?"),
                         this)) {
            if (!Kayit(false)) {
                return;
            }
        }
        setDirty(false);
    }
    base::Result<QList<SinifOgrencisi>> rows = SinifOgrencileri(
        m_db, m_combo1->currentText(), QStringLiteral("FrmTopluBorcTanimiDegistirme:OgrenciGetir"));
    if (!rows) {
        ui::HataBildir(rows.error());
        return;
    }
    m_grid->clearRows();
    for (const SinifOgrencisi &s : *rows) {
        const int r = m_grid->appendRow();
        m_grid->setValue(r, No, s.numara);
        m_grid->setValue(r, Ad, s.adi);
        m_grid->setValue(r, Soyad, s.soyadi);
        m_grid->setValue(r, Sinif, s.sinif);
        m_grid->setValue(r, Sec, true);
        m_grid->setValue(r, Anahtar, s.kayitId);
    }
    m_durum->setText(QStringLiteral("%1 öğrenci").arg(rows->size()));
    setDirty(false);
}

void FrmTopluSinifDegistirme::TumuIsaretli(bool secili)
{
    for (int r = 0; r < m_grid->rowCount(); ++r) {
        m_grid->setValue(r, Sec, secili);
    }
}

void FrmTopluSinifDegistirme::YeniSinifiTasi()
{
    const QString yeni = m_combo2->currentText().trimmed();
    int count = 0;
    for (int r = 0; r < m_grid->rowCount(); ++r) {
        if (m_grid->checked(r, Sec)) {
            m_grid->setValue(r, Sinif, yeni);
            ++count;
        }
    }
    if (count > 0) {
        setDirty(true);
        m_durum->setText(
            QStringLiteral("%1 öğrenciye \"%2\" yazıldı; kaydedilmedi.").arg(count).arg(yeni));
    }
}

bool FrmTopluSinifDegistirme::Kayit(bool sor)
{
    if (sor
        && !ui::askYesNo(QStringLiteral("UYARI"),
                         QStringLiteral("İşaretli Öğrecileri Kaydetmek İstiyor musunuz?"), this)) {
        return false;
    }
    if (!ui::YazmaYetkisiVar()) {
        return false;
    }
    QList<QPair<qint64, QString>> rows;
    for (int r = 0; r < m_grid->rowCount(); ++r) {
        if (m_grid->checked(r, Sec)) {
            rows.append({m_grid->number(r, Anahtar), m_grid->text(r, Sinif)});
        }
    }
    base::Result<int> changed = TopluSinifDegistir(m_db, rows);
    if (!changed) {
        ui::HataBildir(changed.error());
        return false;
    }
    for (const QPair<qint64, QString> &row : rows) {
        emit ui::Bildirimler::instance().ogrenciDegisti(row.first);
    }
    setDirty(false);
    m_durum->setText(QStringLiteral("%1 öğrencinin sınıfı kaydedildi.").arg(*changed));
    SinifCombo();
    return true;
}

void FrmTopluSinifDegistirme::closeEvent(QCloseEvent *event)
{
    if (isDirty()) {
        if (ui::askYesNo(QStringLiteral("UYARI"),
                         QStringLiteral("Yapılan değişiklikleri kaydetmek istiyor musunuz?"),
                         this)) {
            if (!Kayit(false)) {
                event->ignore();
                return;
            }
        }
        setDirty(false);
    }
    QWidget::closeEvent(event);
    event->accept();
}

} // namespace students
