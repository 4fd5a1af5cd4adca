#include "fees/frm_log.h"

#include "base/xlsx.h"
#include "fees/log_view.h"
#include "ui/boxes.h"
#include "ui/failure.h"
#include "ui/grid.h"
#include "ui/inputs.h"
#include "ui/message.h"
#include "users/session.h"
#include "users/user_admin.h"

#include <QComboBox>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QSettings>
#include <QVBoxLayout>

namespace fees {

FrmLog::FrmLog(store::Database &db, QWidget *parent)
    : ui::Screen(QStringLiteral("Frm_Log"), QStringLiteral("Yapılan Değişiklerin Gösterilmesi"),
                 parent)
    , m_db(db)
{
    m_kullanici = new QComboBox(this);
    m_kullanici->setObjectName(QStringLiteral("cmbKullanici"));
    if (const base::Result<QList<users::KullaniciSatiri>> k = users::KullanicilariOku(db)) {
        for (const users::KullaniciSatiri &s : *k)
            m_kullanici->addItem(s.ad);
    } else {
        ui::HataBildir(k.error());
    }
    m_kullanici->setCurrentText(users::durum().AktifKullanici);
    // The working month, from its first day to its last.
    const QString cariAy = users::durum().CariAy;
    QDate ilk(cariAy.left(4).toInt(), cariAy.mid(4, 2).toInt(), 1);
    if (!ilk.isValid())
        ilk = QDate(QDate::currentDate().year(), QDate::currentDate().month(), 1);
    m_ilk = new ui::DateEdit(this);
    m_ilk->setObjectName(QStringLiteral("txtIlkTarih"));
    m_ilk->setDate(ilk);
    m_son = new ui::DateEdit(this);
    m_son->setObjectName(QStringLiteral("txtSonTarih"));
    m_son->setDate(ilk.addMonths(1).addDays(-1));
    m_tablo = new QComboBox(this);
    m_tablo->setObjectName(QStringLiteral("cmbTablo"));
    m_tablo->addItems(LogTablolari());

    auto *form = new QFormLayout;
    const auto row = [&](const QString &caption, QWidget *w) {
        auto *l = new QLabel(caption, this);
        l->setBuddy(w);
        form->addRow(l, w);
    };
    row(QStringLiteral("K&ullanıcı :"), m_kullanici);
    row(QStringLiteral("&Başlangıç Tarihi :"), m_ilk);
    row(QStringLiteral("Bi&tiş Tarihi :"), m_son);
    row(QStringLiteral("T&ablo :"), m_tablo);

    m_liste = new ui::Grid(this);
    m_liste->setObjectName(QStringLiteral("vaSpread1"));
    auto *listele = ui::button(QStringLiteral("cmdListele"), QStringLiteral("&Listele"), this);
    auto *excel = ui::button(QStringLiteral("cmdExcel"), QStringLiteral("&Excel'e Aktar"), this);
    auto *cikis = ui::button(QStringLiteral("cmdCikis"), QStringLiteral("Çı&kış"), this);
    connect(listele, &QPushButton::clicked, this, &FrmLog::Listele);
    connect(excel, &QPushButton::clicked, this, &FrmLog::excelSor);
    connect(cikis, &QPushButton::clicked, this, &FrmLog::closeWindow);
    auto *top = new QHBoxLayout;
    top->addLayout(form);
    top->addStretch();
    auto *buttons = new QHBoxLayout;
    buttons->addWidget(listele);
    buttons->addWidget(excel);
    buttons->addStretch();
    buttons->addWidget(cikis);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(top);
    layout->addWidget(m_liste, 1);
    layout->addLayout(buttons);
    ui::moveWithEnter(this);
    resize(1000, 560);
}

void FrmLog::Listele()
{
    if (!m_ilk->date().isValid() || !m_son->date().isValid() || m_son->date() < m_ilk->date()) {
        ui::notify(QStringLiteral("Dikkat"),
                   QStringLiteral("Başlangıç ve bitiş tarihlerini doğru giriniz; bitiş tarihi "
                                  "başlangıçtan önce olamaz."),
                   ui::Icon::Warning, this);
        m_ilk->setFocus();
        return;
    }
    const base::Result<LogListesi> liste
        = LogOku(m_db, LogTablosu(m_tablo->currentIndex()), m_kullanici->currentText(),
                 m_ilk->date(), m_son->date());
    if (!liste) {
        ui::HataBildir(liste.error());
        return;
    }
    m_basliklar = liste->basliklar;
    m_satirlar = liste->satirlar;
    QList<ui::GridColumn> columns;
    for (const QString &b : m_basliklar)
        columns.append({b, ui::ColumnKind::Text, 110, false});
    m_liste->setColumns(columns);
    for (const QStringList &s : m_satirlar) {
        const int r = m_liste->appendRow();
        for (int c = 0; c < s.size(); ++c)
            m_liste->setValue(r, c, s.at(c));
    }
    if (m_satirlar.isEmpty())
        ui::notify(QStringLiteral("UYARI"), QStringLiteral("Kayıt bulunamadı!"), ui::Icon::Warning,
                   this);
}

bool FrmLog::ExcelAktar(const QString &dosya)
{
    if (base::Status s = base::XlsxYaz(dosya, m_tablo->currentText(), m_basliklar, m_satirlar);
        !s) {
        ui::notify(QStringLiteral("Dikkat"), QStringLiteral("Excel aktarılamadı"),
                   ui::Icon::Warning, this);
        return false;
    }
    ui::notify(QStringLiteral("Bilgi"),
               QDir::toNativeSeparators(dosya) + QStringLiteral(" EXCEL dosyası oluşturuldu."),
               ui::Icon::Information, this);
    return true;
}

void FrmLog::excelSor()
{
    if (m_basliklar.isEmpty()) {
        ui::notify(QStringLiteral("Dikkat"), QStringLiteral("Önce listeyi alınız."),
                   ui::Icon::Warning, this);
        return;
    }
    QSettings ayar;
    const QString klasor = ayar.value(QStringLiteral("kayitKlasoru"), QDir::homePath()).toString();
    const QString ad
        = QStringLiteral("LOG_%1_%2.xlsx")
              .arg(m_tablo->currentText(), m_ilk->date().toString(QStringLiteral("yyyyMM")));
    const QString dosya
        = QFileDialog::getSaveFileName(this, QStringLiteral("Excel Kayıt"),
                                       QDir(klasor).filePath(ad), QStringLiteral("Excel (*.xlsx)"));
    if (dosya.isEmpty())
        return;
    ayar.setValue(QStringLiteral("kayitKlasoru"), QFileInfo(dosya).absolutePath());
    ExcelAktar(dosya);
}

} // namespace fees
