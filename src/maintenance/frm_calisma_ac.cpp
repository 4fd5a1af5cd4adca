#include "maintenance/frm_calisma_ac.h"

#include "maintenance/frm_yeni_calisma.h"
#include "store/database.h"
#include "ui/failure.h"
#include "ui/input_box.h"
#include "ui/inputs.h"
#include "ui/message.h"
#include "users/rights.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

namespace maintenance {

FrmCalismaAc::FrmCalismaAc(store::Database &db, const QString &callerMark, QWidget *parent)
    : QDialog(parent)
    , m_db(db)
    , m_callerMark(callerMark)
{
    setObjectName(QStringLiteral("frmCalismaAc"));
    setWindowTitle(QStringLiteral("Çalışma Aç"));
    setModal(true);

    m_optYeni = new QRadioButton(QStringLiteral("&Yeni Çalışma"), this);
    m_optYeni->setObjectName(QStringLiteral("optYeni"));
    m_optProjeAc = new QRadioButton(QStringLiteral("&Varolan bir çalışmayı aç"), this);
    m_optProjeAc->setObjectName(QStringLiteral("optProjeAc"));
    m_lstRecent = new QListWidget(this);
    m_lstRecent->setObjectName(QStringLiteral("lstRecent"));
    m_lstRecent->setContextMenuPolicy(Qt::CustomContextMenu);
    m_lstRecent->setMinimumHeight(180);
    m_chkBakim = new QCheckBox(QStringLiteral("Dosyaya &Bakım Yap"), this);
    m_chkBakim->setObjectName(QStringLiteral("chkBakim"));
    m_chkBakim->setToolTip(QStringLiteral("Çalışma açılırken veri dosyası sıkıştırılır ve "
                                          "düzenlenir."));

    auto *group = new QGroupBox(QStringLiteral("Çalışma Seçimi"), this);
    auto *g = new QVBoxLayout(group);
    g->addWidget(m_optYeni);
    g->addWidget(m_optProjeAc);
    g->addWidget(m_lstRecent);
    g->addWidget(m_chkBakim);

    auto *tamam = new QPushButton(QStringLiteral("&Tamam"), this);
    tamam->setObjectName(QStringLiteral("cmdTamam"));
    tamam->setDefault(true);
    auto *sil = new QPushButton(QStringLiteral("&Sil"), this);
    sil->setObjectName(QStringLiteral("cmdSil"));
    auto *degistir = new QPushButton(QStringLiteral("Adını &Değiştir"), this);
    degistir->setObjectName(QStringLiteral("cmdDegistir"));
    auto *iptal = new QPushButton(QStringLiteral("İ&ptal"), this);
    iptal->setObjectName(QStringLiteral("cmdIptal"));
    auto *buttons = new QHBoxLayout;
    buttons->addWidget(sil);
    buttons->addWidget(degistir);
    buttons->addStretch();
    buttons->addWidget(tamam);
    buttons->addWidget(iptal);

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(group);
    layout->addLayout(buttons);
    setMinimumWidth(420);

    connect(tamam, &QPushButton::clicked, this, &FrmCalismaAc::cmdTamam_Click);
    connect(sil, &QPushButton::clicked, this, &FrmCalismaAc::cmdSil_Click);
    connect(degistir, &QPushButton::clicked, this, &FrmCalismaAc::MnuDegistir_Click);
    connect(iptal, &QPushButton::clicked, this, &QDialog::reject);
    connect(m_lstRecent, &QListWidget::itemDoubleClicked, this, &FrmCalismaAc::cmdTamam_Click);
    connect(m_lstRecent, &QListWidget::currentRowChanged, this, [this](int row) {
        if (row >= 0)
            m_optProjeAc->setChecked(true);
    });
    connect(m_lstRecent, &QWidget::customContextMenuRequested, this, [this](const QPoint &at) {
        if (!m_lstRecent->currentItem())
            return;
        QMenu menu(this);
        menu.addAction(QStringLiteral("Çalışma Adını Değiştir"), this,
                       &FrmCalismaAc::MnuDegistir_Click);
        menu.exec(m_lstRecent->viewport()->mapToGlobal(at));
    });

    // Every store of the old year is closed while the choice is made.
    store::DatabaseKapat(m_db);
    CalismaDoldur();
    if (m_years.isEmpty()) {
        m_optYeni->setChecked(true);
    } else {
        m_optProjeAc->setChecked(true);
        m_lstRecent->setCurrentRow(KayitliCalismaSirasi(m_db, int(m_years.size())));
    }
    m_lstRecent->setFocus();
}

void FrmCalismaAc::CalismaDoldur()
{
    m_lstRecent->clear();
    base::Result<QList<Calisma>> years = maintenance::CalismaDoldur(m_db);
    if (!years) {
        ui::HataBildir(years.error());
        m_years.clear();
        return;
    }
    m_years = *years;
    for (const Calisma &c : std::as_const(m_years)) {
        auto *item = new QListWidgetItem(c.adi, m_lstRecent);
        item->setData(Qt::UserRole, c.id);
    }
}

bool FrmCalismaAc::rightsForChange()
{
    if (!ui::HakKontrol(m_db, QStringLiteral("btnCalismaAc"))) {
        ui::notify(QStringLiteral("Uyarı !"), users::YetkiYokMesaji, ui::Icon::Warning, this);
        return false;
    }
    return ui::YazmaYetkisiVar();
}

void FrmCalismaAc::cmdTamam_Click()
{
    m_db.setMaintenance(m_chkBakim->isChecked());
    if (m_optYeni->isChecked()) {
        if (!rightsForChange())
            return;
        FrmYeniCalisma yeni(m_db, this);
        if (yeni.exec() != QDialog::Accepted)
            return;
        CalismaDoldur();
        int row = 0;
        for (int i = 0; i < m_years.size(); ++i) {
            if (m_years[i].id == yeni.calisma().id)
                row = i;
        }
        CalismaSecimiYap(m_db, yeni.calisma(), row);
        accept();
        return;
    }
    const int row = m_lstRecent->currentRow();
    if (row < 0 || row >= m_years.size()) {
        ui::notify(QStringLiteral("UYARI"), QStringLiteral("Lütfen geçerli bir çalışma seçiniz."),
                   ui::Icon::Warning, this);
        return;
    }
    CalismaSecimiYap(m_db, m_years[row], row);
    accept();
}

void FrmCalismaAc::cmdSil_Click()
{
    const int row = m_lstRecent->currentRow();
    if (row < 0 || row >= m_years.size()) {
        ui::notify(QStringLiteral("UYARI"), QStringLiteral("Lütfen geçerli bir çalışma seçiniz."),
                   ui::Icon::Warning, this);
        return;
    }
    if (!rightsForChange())
        return;
    const Calisma c = m_years[row];
    if (!ui::askBeforeLosing(
            QStringLiteral("UYARI"),
            c.adi
                + QStringLiteral(" çalışmasını silmek istiyor musunuz?\n(Not: Çalışmadaki "
                                 "tüm bilgiler silinecektir.)"),
            this)) {
        return;
    }
    if (base::Status s = CalismaSil(m_db, c.id); !s) {
        ui::HataBildir(s.error());
        return;
    }
    CalismaDoldur();
    if (m_years.isEmpty())
        m_optYeni->setChecked(true);
    else
        m_lstRecent->setCurrentRow(0);
}

void FrmCalismaAc::MnuDegistir_Click()
{
    const int row = m_lstRecent->currentRow();
    if (row < 0 || row >= m_years.size())
        return;
    if (!rightsForChange())
        return;
    const std::optional<QString> ad
        = ui::inputText(QStringLiteral("Çalışma Adı Değiştirme"),
                        QStringLiteral("Çalışma Adını giriniz : "), m_years[row].adi, this);
    if (!ad)
        return;
    if (ad->trimmed().isEmpty()) {
        ui::notify(QStringLiteral("UYARI"), QStringLiteral("Lütfen çalışma adını giriniz."),
                   ui::Icon::Warning, this);
        return;
    }
    base::Result<bool> taken = CalismaAdiVar(m_db, *ad, m_years[row].id);
    if (!taken) {
        ui::HataBildir(taken.error());
        return;
    }
    if (*taken) {
        ui::notify(QStringLiteral("UYARI"),
                   ad->trimmed()
                       + QStringLiteral(" çalışma adı daha önceden kayıtlı.\nLütfen yeni "
                                        "bir çalışma adı giriniz."),
                   ui::Icon::Warning, this);
        return;
    }
    if (base::Status s = CalismaAdiDegistir(m_db, m_years[row].id, *ad); !s) {
        ui::HataBildir(s.error());
        return;
    }
    CalismaDoldur();
    m_lstRecent->setCurrentRow(row);
}

} // namespace maintenance
