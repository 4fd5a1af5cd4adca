#pragma once

#include "base/result.h"

#include <QString>

namespace store {

class Database;

// The settings that lived in INI files beside the program, kept in the global store so that
// every workstation sees the same. mod "GET" gives the value ("" when the key is missing) and
// "WRITE" stores it. A null QString stands for Null: a Null or empty mode, section or key gives
// "Mode Hatası", "Secname Hatası" or "Keyname Hatası"; "WRITE" with a Null value gives
// "ERROR KeyValue". File, section and key are matched without regard to case, as INI files are.
QString INIAyar(const QString &mod, const QString &dosya, const QString &bolum,
                const QString &anahtar, const QString &deger = QString());
QString INIAyar(store::Database &db, const QString &mod, const QString &dosya, const QString &bolum,
                const QString &anahtar, const QString &deger = QString());
// The writing behind "WRITE", for callers that must know whether it stood: it joins the
// caller's transaction.
base::Status IniYaz(store::Database &db, const QString &dosya, const QString &bolum,
                    const QString &anahtar, const QString &deger);

// The order that puts the school row in force first: the greatest school year, a row without one
// last (the engines would otherwise disagree on where a Null goes).
inline const QString SabitSirasi = QStringLiteral("ORDER BY COALESCE(OgretimYili, '') DESC");

} // namespace store
