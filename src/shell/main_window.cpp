#include "shell/main_window.h"

#include "base/turkish_text.h"
#include "maintenance/frm_calisma_ac.h"
#include "maintenance/school.h"
#include "shell/frm_background.h"
#include "shell/screens.h"
#include "shell/working_month.h"
#include "store/database.h"
#include "store/migration.h"
#include "store/settings.h"
#include "ui/failure.h"
#include "ui/message.h"
#include "ui/notifications.h"
#include "ui/screen.h"
#include "ui/screen_registry.h"
#include "users/command_table.h"
#include "users/frm_ilk_kullanici.h"
#include "users/frm_sifre.h"
#include "users/login.h"
#include "users/rights.h"
#include "users/session.h"

#include <QApplication>
#include <QCloseEvent>
#include <QComboBox>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenuBar>
#include <QPainter>
#include <QPainterPath>
#include <QPointer>
#include <QResizeEvent>
#include <QScrollBar>
#include <QSettings>
#include <QStatusBar>
#include <QStyle>
#include <QToolBar>
#include <QToolButton>

namespace shell {

namespace {

// The child-window area, with the background screen lying under every child window.
class MdiArea : public QMdiArea
{
public:
    explicit MdiArea(QWidget *parent)
        : QMdiArea(parent)
    {}

    void setBackgroundScreen(QWidget *w)
    {
        m_background = w;
        w->setParent(viewport());
        w->lower();
        w->show();
        place();
    }

protected:
    void resizeEvent(QResizeEvent *event) override
    {
        QMdiArea::resizeEvent(event);
        place();
    }

private:
    void place()
    {
        if (m_background) {
            m_background->setGeometry(viewport()->rect());
            m_background->lower();
        }
    }

    QWidget *m_background = nullptr;
};

// A person for the student button, drawn rather than taken from a theme that may lack it.
QIcon personIcon()
{
    QPixmap pm(32, 32);
    pm.fill(Qt::transparent);
    QPainter p(&pm);
    p.setRenderHint(QPainter::Antialiasing);
    p.setPen(Qt::NoPen);
    p.setBrush(QColor(0x2e, 0x55, 0x86));
    p.drawEllipse(QRectF(10, 3, 12, 12));
    QPainterPath body;
    body.moveTo(4, 30);
    body.cubicTo(4, 18, 28, 18, 28, 30);
    body.closeSubpath();
    p.drawPath(body);
    return QIcon(pm);
}

QIcon moneyIcon()
{
    QPixmap pm(32, 32);
    pm.fill(Qt::transparent);
    QPainter p(&pm);
    p.setRenderHint(QPainter::Antialiasing);
    p.setPen(QPen(QColor(0x1d, 0x6b, 0x3a), 2));
    p.setBrush(QColor(0xd9, 0xf2, 0xdf));
    p.drawRoundedRect(QRectF(3, 8, 26, 16), 3, 3);
    QFont f = p.font();
    f.setBold(true);
    f.setPixelSize(13);
    p.setFont(f);
    p.drawText(QRectF(3, 8, 26, 16), Qt::AlignCenter, QStringLiteral("₺"));
    return QIcon(pm);
}

} // namespace

MDIAidat::MDIAidat(store::Database &db, QWidget *parent)
    : QMainWindow(parent)
    , m_db(db)
{
    setObjectName(QStringLiteral("MDIAidat"));
    setWindowTitle(programBasligi());
    TumEkranlariKaydet();
    ui::setKomutCalistirici([this](const QString &tool) { ActBar_Click(tool); });
    ui::setEkranAcici([this](const QString &form, const QString &tool, const QVariantMap &ayar) {
        return openScreen(tool, form, ayar);
    });
    // The store refuses a write that the rights of the screen in use do not allow.
    store::setWriteGuard([] { return users::durum().HakYazma; });
    auto *area = new MdiArea(this);
    area->setObjectName(QStringLiteral("mdiArea"));
    area->setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    area->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    m_mdi = area;
    setCentralWidget(m_mdi);
    m_background = new FrmBackGround(m_db);
    area->setBackgroundScreen(m_background);
    buildBands();
    MenuDurumAyarla(false);
    resize(1180, 760);

    // Each screen keeps the rights it was opened with: whichever child window is in front, its
    // own rights stand.
    connect(m_mdi, &QMdiArea::subWindowActivated, this, [this](QMdiSubWindow *w) {
        if (w)
            rightsOfActiveScreen();
    });
    connect(&ui::Bildirimler::instance(), &ui::Bildirimler::sabitBilgileriDegisti, this, [this] {
        BaslikGuncelle();
        CariAyDoldur();
        m_background->BilgiGuncelle();
    });
}

MDIAidat::~MDIAidat()
{
    ui::setKomutCalistirici(nullptr);
    ui::setEkranAcici(nullptr);
    store::setWriteGuard(nullptr);
}

QString MDIAidat::programBasligi()
{
    return QStringLiteral("Zerna Vortel Programı (Ver.: %1.%2.%3)")
        .arg(VORTEL_VERSION_MAJOR)
        .arg(VORTEL_VERSION_MINOR)
        .arg(VORTEL_VERSION_PATCH);
}

void MDIAidat::buildBands()
{
    // ---- menu band
    QMenuBar *bar = menuBar();
    bar->setObjectName(QStringLiteral("BndMenu"));
    QHash<QMenu *, QMenu *> unplaced; // a menu inside another, not yet in its place there
    for (const users::AnaMenu &m : users::AnaMenuler()) {
        if (!m.parent.isEmpty()) {
            auto *menu = new QMenu(m.caption, m_menus.value(m.parent));
            menu->setObjectName(m.tool);
            m_menus.insert(m.tool, menu);
            unplaced.insert(menu, m_menus.value(m.parent));
            continue;
        }
        const users::Komut *direct = users::KomutBul(m.tool);
        if (direct) {
            QAction *a = bar->addAction(m.caption);
            a->setObjectName(m.tool);
            connect(a, &QAction::triggered, this, [this, tool = m.tool] { ActBar_Click(tool); });
            m_actions.insert(m.tool, a);
            continue;
        }
        QMenu *menu = bar->addMenu(m.caption);
        menu->setObjectName(m.tool);
        m_menus.insert(m.tool, menu);
    }
    for (const users::Komut &k : users::KomutTablosu()) {
        if (k.menu.isEmpty())
            continue;
        QMenu *menu = m_menus.value(k.menu);
        if (!menu)
            continue;
        if (QMenu *parent = unplaced.take(menu))
            parent->addMenu(menu);
        QAction *a = menu->addAction(k.menuCaption);
        a->setObjectName(k.tool);
        connect(a, &QAction::triggered, this, [this, tool = k.tool] { ActBar_Click(tool); });
        if (!m_actions.contains(k.tool))
            m_actions.insert(k.tool, a);
    }
    QMenu *pencere = bar->addMenu(QStringLiteral("&Pencere"));
    pencere->addAction(QStringLiteral("&Yan Yana Diz"), m_mdi, &QMdiArea::tileSubWindows);
    pencere->addAction(QStringLiteral("&Basamakla"), m_mdi, &QMdiArea::cascadeSubWindows);
    pencere->addAction(QStringLiteral("&Tümünü Kapat"), m_mdi, &QMdiArea::closeAllSubWindows);
    QAction *cikis = bar->addAction(QStringLiteral("Çı&kış"));
    cikis->setObjectName(QStringLiteral("popCikis"));
    connect(cikis, &QAction::triggered, this, [this] { ActBar_Click(QStringLiteral("popCikis")); });
    m_actions.insert(QStringLiteral("popCikis"), cikis);

    // ---- tool band
    QToolBar *band = addToolBar(QStringLiteral("Araç Çubuğu"));
    band->setObjectName(QStringLiteral("BndButton"));
    band->setMovable(false);
    band->setIconSize(QSize(28, 28));
    band->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
    const struct
    {
        const char *tool;
        QIcon icon;
    } buttons[] = {
        {"btnOgrenciBilgileri", personIcon()},
        {"btnCariDurum", moneyIcon()},
        {"btnOkulBilgileri", style()->standardIcon(QStyle::SP_FileDialogInfoView)},
        {"btnCalismaAc", style()->standardIcon(QStyle::SP_DirOpenIcon)},
        {"btnYedekAl", style()->standardIcon(QStyle::SP_DialogSaveButton)},
        {"btnYedekAc", style()->standardIcon(QStyle::SP_DialogOpenButton)},
    };
    for (const auto &b : buttons) {
        const QString tool = QString::fromLatin1(b.tool);
        const users::Komut *k = users::KomutBul(tool);
        QAction *a = band->addAction(b.icon,
                                     k->caption.isEmpty() ? QStringLiteral("Öğrenci") : k->caption);
        a->setObjectName(tool);
        a->setToolTip(k->caption.isEmpty() ? QStringLiteral("Öğrenci Bilgileri") : k->caption);
        connect(a, &QAction::triggered, this, [this, tool] { ActBar_Click(tool); });
        m_actions.insert(tool, a);
    }
    band->addSeparator();
    auto *label = new QLabel(QStringLiteral("  Cari Ay : "), band);
    band->addWidget(label);
    m_cmbCariAy = new QComboBox(band);
    m_cmbCariAy->setObjectName(QStringLiteral("Cmb_CariAy"));
    m_cmbCariAy->setMinimumContentsLength(16);
    m_cmbCariAy->setMaxVisibleItems(16);
    band->addWidget(m_cmbCariAy);
    connect(m_cmbCariAy, &QComboBox::currentIndexChanged, this, [this] {
        if (!m_filling)
            ActBar_ComboChange(QStringLiteral("Cmb_CariAy"));
    });
    auto *spacer = new QWidget(band);
    spacer->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    band->addWidget(spacer);
    QAction *exit = band->addAction(style()->standardIcon(QStyle::SP_DialogCloseButton),
                                    QStringLiteral("Çıkış"));
    exit->setObjectName(QStringLiteral("btnCikis"));
    connect(exit, &QAction::triggered, this, [this] { ActBar_Click(QStringLiteral("btnCikis")); });
    m_actions.insert(QStringLiteral("btnCikis"), exit);

    // ---- status band
    statusBar()->setObjectName(QStringLiteral("BndStatus"));
    // Who is at work and where the data is: a label of its own, which the menus' passing
    // hints never wipe out.
    m_durumYazisi = new QLabel(statusBar());
    m_durumYazisi->setObjectName(QStringLiteral("lblDurum"));
    statusBar()->addWidget(m_durumYazisi, 1);
}

namespace {

const QString s_geometryKey = QStringLiteral("anaPencere/geometri");

} // namespace

void MDIAidat::pencereyiGoster()
{
    const QByteArray kept = QSettings().value(s_geometryKey).toByteArray();
    if (kept.isEmpty() || !restoreGeometry(kept)) {
        showMaximized();
        return;
    }
    show();
}

bool MDIAidat::MDIForm_Load()
{
    m_background->show();
    MenuAciklamaOku();
    QCoreApplication::processEvents();
    pencereyiGoster();

    // With no user defined nobody could log in: the first one is made here.
    base::Result<bool> users = users::KullaniciVarMi(m_db);
    if (!users) {
        ui::HataBildir(users.error());
        return false;
    }
    if (!*users) {
        users::FrmIlkKullanici first(m_db, this);
        if (first.exec() != QDialog::Accepted)
            return false;
    }
    users::FrmSifre login(m_db, this);
    if (login.exec() != QDialog::Accepted)
        return false;
    m_durumYazisi->setText(QStringLiteral("Kullanıcı: %1     Veriler: %2")
                               .arg(users::durum().AktifKullanici, m_db.settings().describe()));

    m_calismaCaller.clear(); // the start-up, not the command, opens the working-year screen
    CalismaSec();
    yedekHatirlat();
    return true;
}

void MDIAidat::MenuAciklamaOku()
{
    const QString value = store::INIAyar(m_db, QStringLiteral("GET"), QStringLiteral("mnuShow.ini"),
                                         QStringLiteral("MENU"), QStringLiteral("AÇIKLAMALAR"));
    m_background->aciklamalariGoster(value.toUpper() != QLatin1String("FALSE"));
}

void MDIAidat::yedekHatirlat()
{
    // The automatic backup reminder: due when the days since the last backup reach the count.
    const auto get = [this](const QString &key) {
        return store::INIAyar(m_db, QStringLiteral("GET"), QStringLiteral("ZERYEDEK.INI"),
                              QStringLiteral("YEDEK"), key);
    };
    const int days = int(base::SayiDegeri(get(QStringLiteral("YEDEK GUN SAYISI"))));
    if (days == 0)
        return;
    const std::optional<QDate> last = base::TarihOku(get(QStringLiteral("SON TARIH")));
    if (last && last->daysTo(QDate::currentDate()) < days)
        return;
    ui::notify(QStringLiteral("UYARI"),
               QStringLiteral("Otomatik yedek alma zamanı geldi. Yedekleme bölümü bu sürümde henüz "
                              "bulunmadığından yedek alınamadı; lütfen verilerinizi elle "
                              "yedekleyiniz."),
               ui::Icon::Warning, this);
}

int MDIAidat::childScreenCount() const
{
    return int(m_mdi->subWindowList().size());
}

QMdiSubWindow *MDIAidat::screenWindow(const QString &formName) const
{
    for (QMdiSubWindow *w : m_mdi->subWindowList()) {
        if (w->widget() && w->widget()->objectName() == formName)
            return w;
    }
    return nullptr;
}

void MDIAidat::CalismaSec()
{
    if (childScreenCount() > 0) {
        if (!ui::askYesNo(QStringLiteral("UYARI"),
                          QStringLiteral("Yeni Çalışma Açabilmek için şu anda çalışmakta olduğunuz "
                                         "uygulamalar kapatılacak.\nDevam etmek istiyor musunuz?"),
                          this)) {
            return;
        }
        m_mdi->closeAllSubWindows();
        if (childScreenCount() > 0)
            return; // a screen kept its unsaved changes
    }
    const int before = m_db.selectedYear();
    maintenance::FrmCalismaAc screen(m_db, m_calismaCaller, this);
    const bool chosen = screen.exec() == QDialog::Accepted;
    if (!chosen && before == 0) {
        MenuDurumAyarla(false);
        m_background->BilgiGuncelle();
        return;
    }
    if (!store::DatabaseAc(m_db, store::Store::Year, false, true)) {
        MenuDurumAyarla(false);
        m_background->BilgiGuncelle();
        return;
    }
    store::SonAlanlariEkle(m_db);
    MenuDurumAyarla(true);
    maintenance::SabitBilgileriOku(m_db);
    BaslikGuncelle();
    CariAyDoldur();
    m_background->BilgiGuncelle();
}

void MDIAidat::MenuDurumAyarla(bool acik)
{
    for (const QString &name : users::CalismaGerektirenler()) {
        if (QAction *a = m_actions.value(name))
            a->setEnabled(acik);
        if (QMenu *m = m_menus.value(name))
            m->menuAction()->setEnabled(acik);
    }
    m_cmbCariAy->setEnabled(acik);
    if (!acik)
        return;
    // Entries of commands the user may not read stand disabled (the rights test still runs
    // when a command is given some other way).
    const base::Result<std::optional<QSet<QString>>> okunur = users::OkunabilirKomutlar(m_db);
    if (!okunur || !okunur->has_value())
        return;
    for (QAction *a : findChildren<QAction *>()) {
        const QString tool = a->objectName();
        if (!users::KomutBul(tool) || users::HakTestsiz(tool))
            continue;
        if (!(*okunur)->contains(tool))
            a->setEnabled(false);
    }
}

void MDIAidat::CariAyDoldur()
{
    users::CalismaDurumu &d = users::durum();
    // Without a school year the selector shows the working year's, or this year and the next;
    // the state keeps it empty, so that commands still ask for the school's settings.
    const QString year = d.OgretimYili.isEmpty()
                             ? VarsayilanOgretimYili(QDate::currentDate(), d.AktifCalismaAdi)
                             : d.OgretimYili;
    const QList<AyGirdisi> months = CariAyListesi(year);
    m_filling = true;
    m_cmbCariAy->clear();
    for (const AyGirdisi &m : months)
        m_cmbCariAy->addItem(m.metin, m.veri);
    const int index = CariAySirasi(months, d.CariAy, year, QDate::currentDate());
    m_cmbCariAy->setCurrentIndex(index);
    m_filling = false;
    const QString shown = QString::number(months.value(index).veri);
    if (d.CariAy != shown) {
        d.CariAy = shown;
        m_background->BilgiGuncelle();
    }
}

void MDIAidat::CariAySec(int yyyymm)
{
    const int index = m_cmbCariAy->findData(yyyymm);
    m_cmbCariAy->setCurrentIndex(index < 0 ? 0 : index);
}

void MDIAidat::ActBar_ComboChange(const QString &tool)
{
    if (tool != QLatin1String("Cmb_CariAy") || m_cmbCariAy->currentIndex() < 0)
        return;
    const QString value = QString::number(m_cmbCariAy->currentData().toInt());
    users::CalismaDurumu &d = users::durum();
    if (value == d.CariAy)
        return;
    d.CariAy = value;
    m_background->BilgiGuncelle();
    if (base::Status s = maintenance::CariAyKaydet(m_db, value); !s)
        ui::HataBildir(s.error());
}

bool MDIAidat::SabitBilgiKontrol()
{
    if (!users::durum().OgretimYili.isEmpty())
        return true;
    ui::notify(QStringLiteral("Okul Bilgi Girişi"),
               QStringLiteral("Okul Bilgileriniz Girilmedi. Lütfen Okul Bilgilerinizi Giriniz."),
               ui::Icon::Information, this);
    // The school's screen opens with its own rights, not those of the command that asked.
    if (!maintenance::SabitBilgileriOku(m_db)) {
        if (ui::HakKontrol(m_db, QStringLiteral("popOkulBilgileri")))
            openScreen(QStringLiteral("popOkulBilgileri"), QStringLiteral("FrmOkulBilgileri"));
        else
            ui::notify(QStringLiteral("Uyarı !"), users::YetkiYokMesaji, ui::Icon::Warning, this);
    }
    return false;
}

void MDIAidat::BaslikGuncelle()
{
    QString title = programBasligi();
    const users::CalismaDurumu &d = users::durum();
    if (!d.AktifCalismaAdi.isEmpty())
        title += QStringLiteral(" [ ") + d.AktifCalismaAdi + QStringLiteral(" ]");
    if (!d.OgretimYili.isEmpty())
        title += QStringLiteral(" [ ") + d.OgretimYili + QStringLiteral(" ÖĞRETİM YILI ]");
    setWindowTitle(title);
}

void MDIAidat::rightsOfActiveScreen()
{
    // The current child window: the one in front, also while the program is not the active
    // application.
    QMdiSubWindow *w = m_mdi->currentSubWindow();
    if (!w)
        return;
    const QVariant read = w->property("hakOkuma");
    const QVariant write = w->property("hakYazma");
    if (read.isValid())
        users::durum().HakOkuma = read.toBool();
    if (write.isValid())
        users::durum().HakYazma = write.toBool();
}

void MDIAidat::ActBar_Click(const QString &tool)
{
    if (tool == QLatin1String("popCikis") || tool == QLatin1String("btnCikis")) {
        close();
        return;
    }
    dispatch(tool);
    // A command refused, not built yet, or stopped by the school test leaves the rights it
    // tested behind: the screen in front goes on with its own.
    rightsOfActiveScreen();
}

void MDIAidat::dispatch(const QString &tool)
{
    if (!users::HakTestsiz(tool) && !ui::HakKontrol(m_db, tool)) {
        ui::notify(QStringLiteral("Uyarı !"), users::YetkiYokMesaji, ui::Icon::Warning, this);
        return;
    }
    const users::Komut *komut = users::KomutBul(tool);
    if (!komut)
        return;
    if (komut->okulTesti && !SabitBilgiKontrol())
        return;
    if (tool == QLatin1String("btnCalismaAc")) {
        m_calismaCaller = QStringLiteral("xXx");
        CalismaSec();
        return;
    }
    openScreen(tool, komut->screen);
}

bool MDIAidat::openScreen(const QString &tool, const QString &screen, const QVariantMap &ayar)
{
    const bool read = users::durum().HakOkuma;
    const bool write = users::durum().HakYazma;
    if (QMdiSubWindow *open = screenWindow(screen)) {
        open->setProperty("hakOkuma", read);
        open->setProperty("hakYazma", write);
        m_mdi->setActiveSubWindow(open);
        open->showNormal();
        if (!ayar.isEmpty()
            && open->widget()->metaObject()->indexOfSlot("ekranAyarla(QVariantMap)") >= 0)
            QMetaObject::invokeMethod(open->widget(), "ekranAyarla", Q_ARG(QVariantMap, ayar));
        return true;
    }
    QWidget *widget = ui::EkranYarat(screen, ui::EkranBaglami{m_db, this, tool, ayar});
    if (!widget) {
        const users::Komut *k = users::KomutBul(tool);
        const QString caption = k && !k->caption.isEmpty() ? k->caption : screen;
        ui::notReady(caption, this);
        return false;
    }
    QMdiSubWindow *sub = m_mdi->addSubWindow(widget);
    sub->setAttribute(Qt::WA_DeleteOnClose);
    sub->setProperty("hakOkuma", read);
    sub->setProperty("hakYazma", write);
    sub->setWindowTitle(widget->windowTitle());
    // As large as the screen asks, but never beyond the area: a screen taller than an office's
    // 1366×768 display gives up its stretching lists' height, not its buttons.
    const QSize room = m_mdi->viewport()->size();
    sub->resize((widget->size().expandedTo(widget->sizeHint()) + QSize(16, 40)).boundedTo(room));
    // A screen that closes itself (its "Çıkış") takes its frame with it.
    connect(
        widget, &QObject::destroyed, this,
        [frame = QPointer<QMdiSubWindow>(sub)] {
            if (frame)
                frame->close();
        },
        Qt::QueuedConnection);
    sub->show();
    // Placed within the area, so that no part of it starts out of sight.
    const QRect frame = sub->geometry();
    sub->move(qBound(0, frame.x(), qMax(0, room.width() - frame.width())),
              qBound(0, frame.y(), qMax(0, room.height() - frame.height())));
    ui::focusFirstBox(widget);
    return true;
}

void MDIAidat::closeEvent(QCloseEvent *event)
{
    m_mdi->closeAllSubWindows();
    if (childScreenCount() > 0) {
        event->ignore();
        return;
    }
    QSettings().setValue(s_geometryKey, saveGeometry());
    store::DatabaseKapat(m_db);
    event->accept();
}

} // namespace shell
