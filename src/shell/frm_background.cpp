#include "shell/frm_background.h"

#include "base/turkish_text.h"
#include "shell/dashboard.h"
#include "shell/working_month.h"
#include "store/database.h"
#include "store/settings.h"
#include "ui/failure.h"
#include "users/session.h"

#include <QContextMenuEvent>
#include <QGraphicsDropShadowEffect>
#include <QGridLayout>
#include <QLabel>
#include <QLinearGradient>
#include <QMenu>
#include <QPainter>
#include <QVBoxLayout>

namespace shell {

namespace {

QLabel *shadowed(const QString &name, qreal scale, QWidget *parent)
{
    auto *label = new QLabel(parent);
    label->setObjectName(name);
    QFont f = label->font();
    f.setPointSizeF(f.pointSizeF() * scale);
    f.setBold(true);
    label->setFont(f);
    label->setStyleSheet(QStringLiteral("color: #f4f7fb;"));
    // Each heading with its shadow.
    auto *shadow = new QGraphicsDropShadowEffect(label);
    shadow->setOffset(2, 2);
    shadow->setBlurRadius(3);
    shadow->setColor(QColor(0, 0, 0, 170));
    label->setGraphicsEffect(shadow);
    return label;
}

} // namespace

FrmBackGround::FrmBackGround(store::Database &db, QWidget *parent)
    : QWidget(parent)
    , m_db(db)
{
    setObjectName(QStringLiteral("FrmBackGround"));
    setAutoFillBackground(false);
    m_lblCariAy = shadowed(QStringLiteral("LblCariAy1"), 1.25, this);
    m_lblOkulAdi = shadowed(QStringLiteral("LblOkulAdi1"), 2.0, this);
    m_lblOkulAdi->setWordWrap(true);

    m_pano = new QFrame(this);
    m_pano->setObjectName(QStringLiteral("Pano"));
    // The figures stand only once a year is open: no empty panel before the login.
    m_pano->hide();
    m_pano->setStyleSheet(
        QStringLiteral("#Pano { background: rgba(255,255,255,225); border: 1px solid "
                       "#8fa6c1; border-radius: 6px; } QLabel { color: #1d2b3a; }"));
    auto *grid = new QGridLayout(m_pano);
    grid->setContentsMargins(18, 14, 18, 14);
    grid->setHorizontalSpacing(24);
    grid->setVerticalSpacing(10);
    for (int i = 0; i < 4; ++i) {
        m_lblBilgi[i] = new QLabel(m_pano);
        m_lblBilgi[i]->setObjectName(QStringLiteral("LblBilgi%1").arg(i + 1));
        m_lblTutar[i] = new QLabel(m_pano);
        m_lblTutar[i]->setObjectName(QStringLiteral("LblTutar%1").arg(i + 1));
        m_lblTutar[i]->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        QFont f = m_lblTutar[i]->font();
        f.setBold(true);
        f.setPointSizeF(f.pointSizeF() * 1.15);
        m_lblTutar[i]->setFont(f);
        m_lblBilgi[i]->setFont(f);
        grid->addWidget(m_lblBilgi[i], i, 0);
        grid->addWidget(m_lblTutar[i], i, 1);
    }

    m_aciklamalar = new QWidget(this);
    m_aciklamalar->setObjectName(QStringLiteral("Aciklamalar"));
    auto *notes = new QVBoxLayout(m_aciklamalar);
    notes->setContentsMargins(0, 0, 0, 0);
    const QStringList lines = {
        QStringLiteral("Öğrenci Bilgileri: araç çubuğundaki ilk düğme; öğrencinin kimlik, veli, "
                       "nüfus ve kardeş bilgileri."),
        QStringLiteral("Cari Durum: öğrencinin aidatları, taksitleri ve yaptığı ödemeler."),
        QStringLiteral("Okul Bilgileri: okulun adı, öğretim yılı, cari ay ve taksit yuvarlaması."),
        QStringLiteral("Cari Ay: araç çubuğundaki listeden seçilir; yukarıdaki tutarlar o aya göre "
                       "hesaplanır."),
        QStringLiteral("Çalışma Aç: başka bir çalışma yılına geçmek için."),
        QStringLiteral("Bu açıklamaları gizlemek için sağ tıklayıp \"Gizle\"yi seçiniz."),
    };
    for (const QString &line : lines) {
        auto *l = new QLabel(QStringLiteral("•  ") + line, m_aciklamalar);
        l->setStyleSheet(QStringLiteral("color: #eef3f9;"));
        l->setWordWrap(true);
        notes->addWidget(l);
    }

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(36, 28, 36, 28);
    layout->addWidget(m_lblOkulAdi);
    layout->addWidget(m_lblCariAy);
    layout->addSpacing(18);
    layout->addWidget(m_pano, 0, Qt::AlignLeft);
    layout->addStretch(1);
    layout->addWidget(m_aciklamalar);
}

void FrmBackGround::paintEvent(QPaintEvent *)
{
    QPainter p(this);
    QLinearGradient g(rect().topLeft(), rect().bottomRight());
    g.setColorAt(0.0, QColor(0x2e, 0x55, 0x86));
    g.setColorAt(1.0, QColor(0x17, 0x2c, 0x4a));
    p.fillRect(rect(), g);
}

void FrmBackGround::contextMenuEvent(QContextMenuEvent *event)
{
    QMenu menu(this);
    QAction *gizle = menu.addAction(QStringLiteral("Gizle"));
    QAction *goster = menu.addAction(QStringLiteral("Göster"));
    gizle->setObjectName(QStringLiteral("gizle"));
    goster->setObjectName(QStringLiteral("Göster"));
    QAction *chosen = menu.exec(event->globalPos());
    if (chosen == gizle || chosen == goster) {
        const bool show = chosen == goster;
        aciklamalariGoster(show);
        store::INIAyar(m_db, QStringLiteral("WRITE"), QStringLiteral("mnuShow.ini"),
                       QStringLiteral("MENU"), QStringLiteral("AÇIKLAMALAR"),
                       show ? QStringLiteral("TRUE") : QStringLiteral("FALSE"));
    }
}

void FrmBackGround::aciklamalariGoster(bool goster)
{
    m_aciklamalar->setVisible(goster);
}

bool FrmBackGround::aciklamalarGorunur() const
{
    return !m_aciklamalar->isHidden();
}

void FrmBackGround::BilgiGuncelle()
{
    const users::CalismaDurumu &d = users::durum();
    m_lblCariAy->setText(QStringLiteral("Aktif Çalışma : ") + d.AktifCalismaAdi
                         + QStringLiteral("   Cari Ay : ") + CariAyMetni(d.CariAy));
    m_lblOkulAdi->setText(d.OkulAdi);
    RaporHazirla();
}

void FrmBackGround::RaporHazirla()
{
    const users::CalismaDurumu &d = users::durum();
    const bool open = d.AktifCalismaID != 0 && m_db.openYear() != 0;
    m_pano->setVisible(open);
    if (!open)
        return;
    const base::Result<PanoBilgisi> pano = shell::RaporHazirla(m_db, d.CariAy);
    if (!pano) {
        ui::HataBildir(pano.error());
        return;
    }
    m_lblBilgi[0]->setText(pano->ayAdi + QStringLiteral(" ayında tahsil edilecek TOPLAM TUTAR : "));
    m_lblBilgi[1]->setText(QStringLiteral("Geçmiş aylardan tahsil edilecek TOPLAM TUTAR : "));
    m_lblBilgi[2]->setText(QStringLiteral("Cari Ay'da tahsil edilecek TOPLAM TUTAR : "));
    m_lblBilgi[3]->setText(QStringLiteral("TOPLAM ÖĞRENCİ SAYISI : "));
    m_lblTutar[0]->setText(base::Bicimle(pano->buAy, d.ParaFormati));
    m_lblTutar[1]->setText(base::Bicimle(pano->gecmis, d.ParaFormati));
    m_lblTutar[2]->setText(base::Bicimle(pano->toplam, d.ParaFormati));
    m_lblTutar[3]->setText(QString::number(pano->ogrenciSayisi));
    m_pano->layout()->activate();
    m_pano->adjustSize();
    layout()->activate();
}

QStringList FrmBackGround::bilgiSatirlari() const
{
    QStringList lines;
    for (int i = 0; i < 4; ++i)
        lines << m_lblBilgi[i]->text() + m_lblTutar[i]->text();
    return lines;
}

QString FrmBackGround::cariAySatiri() const
{
    return m_lblCariAy->text();
}

QString FrmBackGround::okulAdi() const
{
    return m_lblOkulAdi->text();
}

} // namespace shell
