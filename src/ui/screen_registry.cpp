#include "ui/screen_registry.h"

#include <QHash>

namespace ui {

namespace {

QHash<QString, EkranYapici> &registry()
{
    static QHash<QString, EkranYapici> s_registry;
    return s_registry;
}

std::function<void(const QString &)> &runner()
{
    static std::function<void(const QString &)> s_runner;
    return s_runner;
}

EkranAcici &opener()
{
    static EkranAcici s_opener;
    return s_opener;
}

QHash<QString, Secici> &pickers()
{
    static QHash<QString, Secici> s_pickers;
    return s_pickers;
}

} // namespace

void SeciciKaydet(const QString &ad, Secici secici)
{
    pickers().insert(ad, std::move(secici));
}

QVariant Sec(const QString &ad, store::Database &db, QWidget *parent)
{
    const Secici secici = pickers().value(ad);
    return secici ? secici(db, parent) : QVariant();
}

void EkranKaydet(const QString &formName, EkranYapici yapici)
{
    registry().insert(formName, std::move(yapici));
}

QWidget *EkranYarat(const QString &formName, const EkranBaglami &baglam)
{
    const auto it = registry().constFind(formName);
    return it == registry().constEnd() ? nullptr : (*it)(baglam);
}

void KomutCalistir(const QString &tool)
{
    if (runner())
        runner()(tool);
}

bool EkranAc(const QString &formName, const QString &tool, const QVariantMap &ayar)
{
    return opener() ? opener()(formName, tool, ayar) : false;
}

void setEkranAcici(EkranAcici acici)
{
    opener() = std::move(acici);
}

void setKomutCalistirici(std::function<void(const QString &tool)> calistirici)
{
    runner() = std::move(calistirici);
}

} // namespace ui
