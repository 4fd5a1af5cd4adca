#include "students/frm_ogrenci_list.h"

#include "ui/boxes.h"
#include "ui/failure.h"
#include "ui/grid.h"

#include <QEvent>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace students {

namespace {

enum Column { No, Ad, Soyad, Sinif, Kayit, Tc };

} // namespace

FrmOgrenciList::FrmOgrenciList(store::Database &db, QWidget *parent)
    : QDialog(parent)
    , m_db(db)
{
    setObjectName(QStringLiteral("frmOgrenciList"));
    setWindowTitle(QStringLiteral("Öğrenci Listesi"));

    m_ad = new QLineEdit(this);
    m_ad->setObjectName(QStringLiteral("txtAd"));
    m_ad->setMaxLength(20);
    m_soyad = new QLineEdit(this);
    m_soyad->setObjectName(QStringLiteral("txtSoyad"));
    m_soyad->setMaxLength(20);

    m_grid = new ui::Grid(this);
    m_grid->setObjectName(QStringLiteral("vaSpread1"));
    m_grid->setColumns({
        {QStringLiteral("Öğr. No"), ui::ColumnKind::Number, 70, false},
        {QStringLiteral("Ad"), ui::ColumnKind::Text, 150, false},
        {QStringLiteral("Soyad"), ui::ColumnKind::Text, 150, false},
        {QStringLiteral("Sınıf"), ui::ColumnKind::Text, 70, false},
        {QStringLiteral("KayitID"), ui::ColumnKind::Number, 60, false, true},
        {QStringLiteral("Tc No"), ui::ColumnKind::Text, 110, false},
    });
    m_grid->setLocked(true);
    m_grid->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_grid->horizontalHeader()->setStretchLastSection(true);
    m_grid->installEventFilter(this);

    auto *tamamButon = ui::button(QStringLiteral("cmdTamam"), QStringLiteral("&Tamam"), this);
    auto *iptal = ui::button(QStringLiteral("cmdIptal"), QStringLiteral("İ&ptal"), this);
    // Enter belongs to the boxes and the list, never to a default button.
    for (QPushButton *b : {tamamButon, iptal}) {
        b->setAutoDefault(false);
        b->setDefault(false);
    }

    auto *boxes = new QGridLayout;
    boxes->addWidget(new QLabel(QStringLiteral("Ad :"), this), 0, 0);
    boxes->addWidget(m_ad, 0, 1);
    boxes->addWidget(new QLabel(QStringLiteral("Soyad :"), this), 0, 2);
    boxes->addWidget(m_soyad, 0, 3);
    auto *hint = new QLabel(QStringLiteral("Yazdıkça imleç adı ya da soyadı böyle başlayan ilk "
                                           "öğrenciye gider; Enter listeyi bu öğrencilere "
                                           "indirir."),
                            this);
    // In the window's own text colour: a greyed label reads as switched off, and is hard to read.
    hint->setObjectName(QStringLiteral("lblAciklama"));
    hint->setWordWrap(true);
    boxes->addWidget(hint, 1, 0, 1, 4);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(tamamButon);
    buttons->addWidget(iptal);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(boxes);
    layout->addWidget(m_grid, 1);
    layout->addLayout(buttons);
    resize(640, 520);

    connect(m_ad, &QLineEdit::textEdited, this,
            [this](const QString &t) { imleciTasi(ListeSirasi::Ad, t); });
    connect(m_soyad, &QLineEdit::textEdited, this,
            [this](const QString &t) { imleciTasi(ListeSirasi::Soyad, t); });
    connect(m_ad, &QLineEdit::returnPressed, this, [this] { OgrenciYukle(ListeSirasi::Ad, true); });
    connect(m_soyad, &QLineEdit::returnPressed, this,
            [this] { OgrenciYukle(ListeSirasi::Soyad, true); });
    connect(m_grid, &QAbstractItemView::doubleClicked, this, [this] { tamam(); });
    connect(tamamButon, &QPushButton::clicked, this, [this] { tamam(); });
    connect(iptal, &QPushButton::clicked, this, &QDialog::reject);

    OgrenciYukle(ListeSirasi::Ad);
    m_ad->setFocus();
}

bool FrmOgrenciList::OgrenciYukle(ListeSirasi tur, bool suz)
{
    const QLineEdit *box = tur == ListeSirasi::Ad ? m_ad : m_soyad;
    base::Result<QList<ListeSatiri>> rows
        = students::OgrenciYukle(m_db, tur, suz ? box->text() : QString());
    if (!rows) {
        ui::HataBildir(rows.error());
        return false;
    }
    m_sira = tur;
    m_anahtarlar.clear();
    m_anahtarlar.reserve(rows->size());
    m_grid->setUpdatesEnabled(false);
    m_grid->clearRows();
    for (const ListeSatiri &r : *rows) {
        const int row = m_grid->appendRow();
        m_grid->setValue(row, No, r.numara);
        m_grid->setValue(row, Ad, r.adi);
        m_grid->setValue(row, Soyad, r.soyadi);
        m_grid->setValue(row, Sinif, r.sinif);
        m_grid->setValue(row, Kayit, r.kayitId);
        m_grid->setValue(row, Tc, r.tcNo);
        m_anahtarlar.append(ListeAnahtari(r, tur));
    }
    m_grid->setUpdatesEnabled(true);
    if (!rows->isEmpty()) {
        m_grid->setCurrentCell(0, tur == ListeSirasi::Ad ? Ad : Soyad);
    }
    return true;
}

void FrmOgrenciList::imleciTasi(ListeSirasi tur, const QString &metin)
{
    if (m_sira != tur && !OgrenciYukle(tur)) {
        return;
    }
    const int row = IlkEslesen(m_anahtarlar, metin);
    if (row < 0) {
        return;
    }
    const int column = tur == ListeSirasi::Ad ? Ad : Soyad;
    m_grid->setCurrentCell(row, column);
    m_grid->scrollTo(m_grid->model()->index(row, column), QAbstractItemView::PositionAtTop);
}

int FrmOgrenciList::rowCount() const
{
    return m_grid->rowCount();
}

qint64 FrmOgrenciList::seciliKayit() const
{
    const int row = m_grid->currentRowIndex();
    return row < 0 ? 0 : m_grid->number(row, Kayit);
}

void FrmOgrenciList::tamam()
{
    const qint64 key = seciliKayit();
    if (key == 0) {
        return;
    }
    emit ogrenciSecildi(key);
    accept();
}

bool FrmOgrenciList::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_grid && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent *>(event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter) {
            tamam();
            return true;
        }
    }
    return QDialog::eventFilter(watched, event);
}

std::optional<qint64> OgrenciSec(store::Database &db, QWidget *parent)
{
    FrmOgrenciList list(db, parent);
    if (list.exec() != QDialog::Accepted || list.seciliKayit() == 0) {
        return std::nullopt;
    }
    return list.seciliKayit();
}

} // namespace students
