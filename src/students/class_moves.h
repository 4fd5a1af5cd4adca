#pragma once

#include "base/result.h"

#include <QList>
#include <QPair>
#include <QString>

#include <functional>

namespace store {
class Database;
}

// Work on many students at once at the start of a year: quick entry of a class, and moving the
// students of a class to another class. A class is the text of Ogr_Sinif; the fee accounts
// stay as they are.
namespace students {

// ---- quick entry -------------------------------------------------------------------------------

struct HizliSatir
{
    qint64 numara = 0;
    QString adi;
    QString soyadi;
    QString sinif;
    QString cinsiyet;
    QString bolum;
    QString yabanciDil;
};

// OgrenciNoKontrol: true when a student with that number exists.
base::Result<bool> OgrenciNoKontrol(store::Database &db, qint64 numara);

// The save of the quick-entry grid: each row becomes a student (number, Donem, names, class,
// department, language) with his change-log row and a registry row holding the sex. One
// transaction for all rows: after a failure none is written. `ilerleme` is told after each
// row. Gives the new keys in the order of the rows.
base::Result<QList<qint64>> HizliOgrenciKaydet(store::Database &db,
                                               const QList<HizliSatir> &satirlar,
                                               const std::function<void(int, int)> &ilerleme = {});

// ---- class moves -------------------------------------------------------------------------------

struct SinifOgrencisi
{
    qint64 kayitId = 0;
    qint64 numara = 0;
    QString adi;
    QString soyadi;
    QString sinif;
    QString donem;
};

// The students of a class in the order of their numbers ("" is the class of those without
// one).
base::Result<QList<SinifOgrencisi>> SinifOgrencileri(store::Database &db, const QString &sinif,
                                                     const QString &label);

// Sınıf Atlatma: each number's student in the old class (the first found) goes to the new
// class. Gives the keys of the students moved.
base::Result<QList<qint64>> SinifAtlat(store::Database &db, const QString &eskiSinif,
                                       const QString &yeniSinif, const QList<qint64> &numaralar);

// Toplu Sınıf Değiştirme: each student, by key, gets the class beside him.
base::Result<int> TopluSinifDegistir(store::Database &db,
                                     const QList<QPair<qint64, QString>> &kayitSinif);

} // namespace students
