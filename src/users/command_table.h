#pragma once

#include <QList>
#include <QString>

namespace users {

// One command of the main window: the tool name that dispatch goes by, the caption of its menu
// or band entry, the screen it opens, whether the school's settings must exist first, and where
// it stands: under a menu of the menu band, on the tool band, or both.
struct Komut
{
    QString tool;
    QString caption;
    QString screen;
    bool okulTesti = false;
    QString menu; // the menu it stands under ("" when it is on the tool band only)
    bool toolBand = false;
    QString menuCaption = {}; // the caption in its menu, its Alt letter marked by '&'
};

// A menu of the menu band, or one inside another menu; the entries whose tool is listed in
// MenuDurumAyarla are enabled only with an open working year.
struct AnaMenu
{
    QString tool;
    QString caption;
    QString parent = {}; // the menu it stands in, where its first entry would; "" on the band
};

const QList<Komut> &KomutTablosu();
const Komut *KomutBul(const QString &tool);
const QList<AnaMenu> &AnaMenuler();
// The commands that pass without the rights test.
bool HakTestsiz(const QString &tool);
// The band and menu entries that need an open working year.
const QStringList &CalismaGerektirenler();

} // namespace users
