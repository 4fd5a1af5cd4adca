#pragma once

#include "base/result.h"

#include <QList>
#include <QString>

namespace store {
class Database;
}

namespace maintenance {

struct Calisma
{
    int id = 0;
    QString adi;
};

// The working years whose store exists, newest first.
base::Result<QList<Calisma>> CalismaDoldur(store::Database &db);
// True when another year (not `haricId`) has this name.
base::Result<bool> CalismaAdiVar(store::Database &db, const QString &ad, int haricId = 0);
// Adds a working year by name and gives its number; its store is made at the first opening.
base::Result<int> CalismaKaydet(store::Database &db, const QString &ad);
// Deletes a year's stores and its row.
base::Status CalismaSil(store::Database &db, int id);
base::Status CalismaAdiDegistir(store::Database &db, int id, const QString &ad);
// Makes a year the session's choice: the working state, the connection's chosen year, and the
// list position remembered under AktifCalisma/ID of Aidat.ini.
void CalismaSecimiYap(store::Database &db, const Calisma &calisma, int listeSirasi);
// The remembered list position, or 0 when it is missing or beyond the list.
int KayitliCalismaSirasi(store::Database &db, int listeBoyu);

} // namespace maintenance
