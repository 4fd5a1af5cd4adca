#pragma once

#include <QString>
#include <QVariantMap>

#include <functional>

class QWidget;

namespace store {
class Database;
}

namespace ui {

// What a screen is opened with: the connection, the main window, and the command that opened
// it (several commands open one screen in different modes).
struct EkranBaglami
{
    store::Database &db;
    QWidget *anaPencere = nullptr;
    QString tool;
    // What the screen opens on ("ogrKayitId", "ogrSinif"...), when another screen opens it.
    QVariantMap ayar = {};
};

// The screens each subsystem offers, by form name. Each subsystem registers its own from its
// EkranlariKaydet(); the main window makes them when a command asks.
using EkranYapici = std::function<QWidget *(const EkranBaglami &)>;
void EkranKaydet(const QString &formName, EkranYapici yapici);
// nullptr while the screen is not part of the program yet.
QWidget *EkranYarat(const QString &formName, const EkranBaglami &baglam);

// How one screen asks for another (F4 on a student opens his fee account): runs a command of the
// main window by its tool name, with its rights and school tests.
void KomutCalistir(const QString &tool);
void setKomutCalistirici(std::function<void(const QString &tool)> calistirici);

// Opens a screen on something (F4 opens the fee account on the shown student), with the rights
// of the last rights test, which the caller has run. A screen already open is brought forward
// and given the settings through its slot ekranAyarla(QVariantMap). False while the screen is
// not part of the program yet.
bool EkranAc(const QString &formName, const QString &tool, const QVariantMap &ayar);
using EkranAcici
    = std::function<bool(const QString &formName, const QString &tool, const QVariantMap &ayar)>;
void setEkranAcici(EkranAcici acici);

// The pick-lists one subsystem offers another ("OgrenciListesi": a student's key): a modal
// choice that gives its value back, or an invalid QVariant when nothing was chosen or no such
// list is part of the program.
using Secici = std::function<QVariant(store::Database &db, QWidget *parent)>;
void SeciciKaydet(const QString &ad, Secici secici);
QVariant Sec(const QString &ad, store::Database &db, QWidget *parent);

} // namespace ui
