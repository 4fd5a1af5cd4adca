#include "students/frm_hizli_ogrenci_kayit.h"

#include "store/schema.h"
#include "students/class_moves.h"
#include "students/student_record.h"
#include "ui/boxes.h"
#include "ui/failure.h"
#include "ui/grid.h"
#include "ui/message.h"
#include "ui/notifications.h"
#include "users/rights.h"

#include <QCoreApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

namespace students {

namespace {

const QString Label = QStringLiteral("FrmHizliOgrenciKayit:AlanBolumYabancidilCombo");

int size(const char *table, const char *field)
{
    return store::schema::textSize(store::Store::Year, QString::fromLatin1(table),
                                   QString::fromLatin1(field));
}

QList<ui::GridColumn> columns(const QStringList &siniflar, const QStringList &bolumler,
                              const QStringList &diller)
{
    using C = ui::ColumnKind;
    return {
        {QStringLiteral("Öğr.No"), C::Number, 70},
        {QStringLiteral("Ad"), C::Text, 150, true, false, size("Ogrenci", "Ogr_Adi")},
        {QStringLiteral("Soyad"), C::Text, 150, true, false, size("Ogrenci", "Ogr_Soyadi")},
        {QStringLiteral("Sınıf"), C::Combo, 80, true, false, size("Ogrenci", "Ogr_Sinif"),
         siniflar},
        {QStringLiteral("Cinsiyet"),
         C::Combo,
         90,
         true,
         false,
         size("OgrenciNufus", "Ogr_Nufus_Cinsiyet"),
         {QStringLiteral("ERKEK"), QStringLiteral("KIZ")}},
        {QStringLiteral("Alan/Bölüm"), C::Combo, 150, true, false, size("Ogrenci", "Ogr_Bolumu"),
         bolumler},
        {QStringLiteral("Yabancı Dil"), C::Combo, 130, true, false,
         size("Ogrenci", "Ogr_YabanciDil"), diller},
        {QStringLiteral("KayitID"), C::Number, 60, false, true},
    };
}

} // namespace

FrmHizliOgrenciKayit::FrmHizliOgrenciKayit(store::Database &db, QWidget *parent)
    : ui::Screen(QStringLiteral("FrmHizliOgrenciKayit"), QStringLiteral("Hızlı Öğrenci Girişi"),
                 parent)
    , m_db(db)
{
    m_grid = new ui::Grid(this);
    m_grid->setObjectName(QStringLiteral("vaSpread1"));
    m_grid->setColumns(columns({}, {}, {}));
    m_grid->horizontalHeader()->setStretchLastSection(true);

    auto *hint = new QLabel(QStringLiteral("Her öğrenci bir satır: numara, ad ve soyadı dolu "
                                           "satırlar kaydedilir. Yeni satıra geçince sınıf, "
                                           "cinsiyet, bölüm ve dil üst satırdan gelir."),
                            this);
    hint->setWordWrap(true);
    m_progress = new QProgressBar(this);
    m_progress->setObjectName(QStringLiteral("PicProgress"));
    m_progress->setVisible(false);
    m_durum = new QLabel(this);
    m_durum->setObjectName(QStringLiteral("lblDurum"));

    auto *satirSil = ui::button(QStringLiteral("cmdSatirSil"), QStringLiteral("Satırı &Sil"), this);
    auto *kaydet = ui::button(QStringLiteral("cmdKaydet"), QStringLiteral("K&aydet"), this);
    auto *cikis = ui::button(QStringLiteral("cmdCikis"), QStringLiteral("Çı&kış"), this);
    auto *buttons = new QHBoxLayout;
    buttons->addWidget(satirSil);
    buttons->addWidget(m_durum, 1);
    buttons->addWidget(kaydet);
    buttons->addWidget(cikis);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(hint);
    layout->addWidget(m_grid, 1);
    layout->addWidget(m_progress);
    layout->addLayout(buttons);
    resize(880, 520);

    connect(m_grid, &ui::Grid::cellEdited, this, &FrmHizliOgrenciKayit::hucreDegisti);
    connect(m_grid, &ui::Grid::cellLeft, this, [this](int row, int column) {
        if (column == No) {
            OgrenciNoKontrol(row);
        }
    });
    connect(m_grid->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            [this](const QModelIndex &current) { satiraGirildi(current.row()); });
    connect(kaydet, &QPushButton::clicked, this, [this] { Kaydet(); });
    connect(satirSil, &QPushButton::clicked, this, &FrmHizliOgrenciKayit::satirSil);
    connect(cikis, &QPushButton::clicked, this, &ui::Screen::closeWindow);

    AlanBolumYabancidilCombo();
    m_grid->appendRow();
    m_grid->setCurrentCell(0, No);
}

void FrmHizliOgrenciKayit::AlanBolumYabancidilCombo()
{
    QStringList lists[3];
    const QString fields[3] = {QStringLiteral("Ogr_Sinif"), QStringLiteral("Ogr_Bolumu"),
                               QStringLiteral("Ogr_YabanciDil")};
    for (int i = 0; i < 3; ++i) {
        base::Result<QStringList> values = FarkliDegerler(m_db, fields[i], false, Label);
        if (!values) {
            ui::HataBildir(values.error());
            return;
        }
        lists[i] = *values;
    }
    const QList<ui::GridColumn> c = columns(lists[0], lists[1], lists[2]);
    // The columns' lists change; their widths stay as the operator left them.
    QList<int> widths;
    for (int i = 0; i < c.size(); ++i) {
        widths << m_grid->columnWidth(i);
    }
    m_grid->gridModel()->setColumns(c);
    for (int i = 0; i < c.size(); ++i) {
        if (widths.at(i) > 0) {
            m_grid->setColumnWidth(i, widths.at(i));
        }
    }
}

bool FrmHizliOgrenciKayit::OgrenciNoKontrol(int row)
{
    const QVariant value = m_grid->value(row, No);
    if (m_kontrolde || !value.isValid() || value.isNull()) {
        return true;
    }
    base::Result<bool> exists = students::OgrenciNoKontrol(m_db, value.toLongLong());
    if (!exists) {
        ui::HataBildir(exists.error());
        return false;
    }
    if (!*exists) {
        return true;
    }
    m_kontrolde = true;
    ui::notify(QStringLiteral("UYARI"),
               QString::number(value.toLongLong())
                   + QStringLiteral(" öğrenci numarasında kayıtlı öğrenci var."),
               ui::Icon::Warning, this);
    m_grid->setValue(row, No, QVariant());
    // Back to the refused cell once the move that left it is over.
    QTimer::singleShot(0, this, [this, row] {
        m_grid->setCurrentCell(row, No);
        m_grid->setFocus();
        m_kontrolde = false;
    });
    return false;
}

void FrmHizliOgrenciKayit::hucreDegisti(int row, int column)
{
    setDirty(true);
    const QVariant no = m_grid->value(row, No);
    if (column == No && no.isValid() && !no.isNull() && !OgrenciNoGecerli(no.toLongLong())) {
        ui::notify(QStringLiteral("Dikkat"),
                   QStringLiteral("\"%1\" geçerli bir öğrenci numarası değil. Öğrenci No olarak "
                                  "yalnız rakam giriniz.")
                       .arg(no.toLongLong()),
                   ui::Icon::Warning, this);
        m_grid->setValue(row, No, QVariant());
    }
    m_durum->clear();
    // A spare row is always ready below the last one that holds something.
    if (row == m_grid->rowCount() - 1) {
        m_grid->appendRow();
    }
}

void FrmHizliOgrenciKayit::satiraGirildi(int row)
{
    if (row <= 0) {
        return;
    }
    for (int c = No; c <= Dil; ++c) {
        if (!m_grid->text(row, c).isEmpty()) {
            return;
        }
    }
    // A new row takes class, sex, department and language from the row above.
    for (int c = Sinif; c <= Dil; ++c) {
        m_grid->setValue(row, c, m_grid->value(row - 1, c));
    }
}

void FrmHizliOgrenciKayit::satirSil()
{
    const int row = m_grid->currentRowIndex();
    if (row < 0) {
        return;
    }
    m_grid->removeRowAt(row);
    if (m_grid->rowCount() == 0) {
        m_grid->appendRow();
    }
    setDirty(true);
}

bool FrmHizliOgrenciKayit::Kaydet()
{
    if (!ui::YazmaYetkisiVar()) {
        return false;
    }
    QList<HizliSatir> rows;
    QList<int> gridRows;
    for (int r = 0; r < m_grid->rowCount(); ++r) {
        const QVariant no = m_grid->value(r, No);
        const QString ad = m_grid->text(r, Ad).trimmed();
        const QString soyad = m_grid->text(r, Soyad).trimmed();
        if (!no.isValid() || no.isNull() || ad.isEmpty() || soyad.isEmpty()) {
            continue;
        }
        // A number typed just before the save has not been tested on leaving its cell.
        if (!OgrenciNoKontrol(r)) {
            return false;
        }
        rows.append(HizliSatir{no.toLongLong(), ad, soyad, m_grid->text(r, Sinif),
                               m_grid->text(r, Cinsiyet), m_grid->text(r, Bolum),
                               m_grid->text(r, Dil)});
        gridRows.append(r);
    }
    if (rows.isEmpty()) {
        ui::notify(QStringLiteral("Dikkat"),
                   QStringLiteral("Kaydedilecek öğrenci yok. Numara, ad ve soyadı dolu "
                                  "satırlar kaydedilir."),
                   ui::Icon::Information, this);
        return false;
    }
    m_progress->setRange(0, int(rows.size()));
    m_progress->setValue(0);
    m_progress->setVisible(true);
    base::Result<QList<qint64>> keys = HizliOgrenciKaydet(m_db, rows, [this](int done, int) {
        m_progress->setValue(done);
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    });
    m_progress->setVisible(false);
    if (!keys) {
        ui::HataBildir(keys.error());
        return false;
    }
    // The saved rows leave the grid; rows that were not complete stay to be finished.
    for (int i = int(gridRows.size()) - 1; i >= 0; --i) {
        m_grid->removeRowAt(gridRows.at(i));
    }
    if (m_grid->rowCount() == 0 || !m_grid->text(m_grid->rowCount() - 1, No).isEmpty()) {
        m_grid->appendRow();
    }
    for (const qint64 key : *keys) {
        emit ui::Bildirimler::instance().ogrenciDegisti(key);
    }
    bool leftOver = false;
    for (int r = 0; r < m_grid->rowCount(); ++r) {
        for (int c = No; c <= Soyad; ++c) {
            leftOver = leftOver || !m_grid->text(r, c).isEmpty();
        }
    }
    setDirty(leftOver);
    m_durum->setText(QStringLiteral("%1 öğrenci kaydedildi.").arg(keys->size()));
    AlanBolumYabancidilCombo();
    m_grid->setCurrentCell(0, No);
    return true;
}

} // namespace students
