#pragma once

#include "base/para.h"
#include "base/result.h"
#include "students/student_fields.h"

#include <QByteArray>
#include <QDate>
#include <QList>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <optional>

namespace store {
class Database;
}

// One student's record: identity, class and number, parents, registry data, notes, siblings,
// photograph, and the totals of his fee accounts. The student screen and every screen that
// reaches a student go through these functions; none of them shows anything.
namespace students {

// A field's kind as the store keeps it.
enum class AlanTuru { Metin, Tarih, Para, Sayi };
AlanTuru alanTuru(const QString &tablo, const QString &alan);

struct Kardes
{
    QString ad;
    QString soyad;
    QString okul;
    QString sinif;
};

// The guardian's card number: encrypted in the store, in clear in OgrenciKaydi.
inline const QString KartNoAlani = QStringLiteral("Ogr_Veli_KrediKarti");
inline constexpr int KartNoUzunlugu = 23;

// A value of a field: QString for text, QDate for dates (invalid: none), base::Para for
// money, qint64 for numbers.
struct OgrenciKaydi
{
    qint64 kayitId = 0; // 0: a student not saved yet
    QVariantHash ogrenci;
    QVariantHash nufus;
    QString ozelBilgi;
    QList<Kardes> kardesler;
    QByteArray resim;     // JPEG; empty when there is no picture
    QString ilkKullanici; // Ogr_Islem_Yapan_Kullanici_Ilk, as read
    QString islemYapan;   // Ogr_Islem_Yapan_Kullanici, as read

    QString metin(const QString &alan) const { return ogrenci.value(alan).toString(); }
    qint64 numara() const { return ogrenci.value(QStringLiteral("Ogr_Numarasi")).toLongLong(); }
    QString adi() const { return metin(QStringLiteral("Ogr_Adi")); }
    QString soyadi() const { return metin(QStringLiteral("Ogr_Soyadi")); }
    QString sinif() const { return metin(QStringLiteral("Ogr_Sinif")); }
    bool ayrildi() const { return metin(QStringLiteral("Ogr_Ayrildi")) == QLatin1String("1"); }
    QDate ayrilmaTarihi() const
    {
        return ogrenci.value(QStringLiteral("Ogr_Kayit_Silme_Tarihi")).toDate();
    }
};

// A student number the store can keep: a whole number from 0 to 2147483647.
inline constexpr qint64 EnBuyukOgrenciNo = 2147483647;
inline bool OgrenciNoGecerli(qint64 numara)
{
    return numara >= 0 && numara <= EnBuyukOgrenciNo;
}

// The word for a stored code of a student field, as lists show it ("1" of Ogr_Yatili is
// "YATILI"). Field names are compared without regard to case; a field without words gives its
// stored value back.
QString KodAciklamasi(const QString &alan, const QString &deger);

// The number, names and class by which the office finds a student.
struct Kimlik
{
    qint64 numara = 0;
    QString adi;
    QString soyadi;
    QString sinif;
};

// ---- reading -------------------------------------------------------------------------------

// The student with that key, with his registry row, notes, siblings and picture; nullopt when
// there is none.
base::Result<std::optional<OgrenciKaydi>> OgrenciOku(store::Database &db, qint64 kayitId);
// The key of the first student with that number.
base::Result<std::optional<qint64>> NumaradanBul(store::Database &db, qint64 numara);
// The key of a student with this number, surname and first name (the identity triple).
base::Result<std::optional<qint64>> AyniOgrenciyiBul(store::Database &db, qint64 numara,
                                                     const QString &soyadi, const QString &adi);
// The values of a field of Ogrenci, each once, in order ("Select Distinct ... Order By").
// Empty values are left out unless asked for. A failure carries `hataEtiketi`, or the student
// screen's label.
base::Result<QStringList> FarkliDegerler(store::Database &db, const QString &alan,
                                         bool bosDahil = false,
                                         const QString &hataEtiketi = QString());

// ---- writing -------------------------------------------------------------------------------

struct KaydetSonucu
{
    qint64 kayitId = 0;
    bool yeni = false;
};

// OgrenciKaydet: the student, his registry row, his notes, his siblings and his picture in one
// transaction, with the change-log row of a new student. A shown key whose row has gone is
// added again under a new key. With `borclariKapat`, for a student marked as left with a
// leaving date, his fee accounts are deleted with their installments and payments. Donem and
// the first user come from the working state.
base::Result<KaydetSonucu> OgrenciKaydet(store::Database &db, const OgrenciKaydi &kayit,
                                         bool borclariKapat);

// OgrenciSil: the student found by number, first name and surname (of several, the shown key
// first) with his registry row, accounts, installments, payments, invoices and picture. His
// notes and siblings stay. Gives the key deleted, 0 when no student matched.
base::Result<qint64> OgrenciSil(store::Database &db, qint64 kayitId, qint64 numara,
                                const QString &adi, const QString &soyadi);

// OgrenciBilgiDegistir: the shown student's number, names and class, found by key and the old
// values together. Gives the number of rows changed.
base::Result<int> OgrenciBilgiDegistir(store::Database &db, qint64 kayitId, const Kimlik &eski,
                                       const Kimlik &yeni);

// ---- moving through the students ---------------------------------------------------------------

enum class AramaAnahtari { Numara, Ad, Soyad, Sinif };
enum class Yon { Ilk, Onceki, Sonraki, Son };

// OgrenciAra: the student that comes first, before, after or last by the key, from the values
// on the screen. Students that share the key's value follow one another by their keys, so
// that none is skipped. nullopt when there is none.
base::Result<std::optional<qint64>> OgrenciAra(store::Database &db, AramaAnahtari anahtar, Yon yon,
                                               const Kimlik &ekran, qint64 kayitId);

// ---- the totals of the fee accounts ---------------------------------------------------------

struct GenelDurumSonucu
{
    base::Para toplamBorc;
    base::Para toplamOdenen;
    base::Para kalan;
};
// Genel_Durum: what the installments of all his accounts ask and what his payments paid.
base::Result<GenelDurumSonucu> GenelDurum(store::Database &db, qint64 kayitId);

struct BuAySatiri
{
    QString aidatTanim;
    std::optional<base::Para> tutar; // what is still due, when something is
};
struct BuAySonucu
{
    QList<BuAySatiri> satirlar;
    base::Para toplam;
};
// The first day of the month after the working month "yyyyMM" (this month when unreadable).
QDate BuAySonu(const QString &cariAy);
// BuAyYapilacakOdemeler: per account, what fell due before the end of the working month and is
// not paid yet.
base::Result<BuAySonucu> BuAyYapilacakOdemeler(store::Database &db, qint64 kayitId,
                                               const QString &cariAy);

// ---- the photograph ----------------------------------------------------------------------------

// The name under which the open working year keeps its students' photographs.
QString FotografCalisma(store::Database &db);
// A picture file made ready for the store: JPEG, at most 600x800 points. Empty when the file
// is not a picture.
QByteArray FotografHazirla(const QString &dosya);

} // namespace students
