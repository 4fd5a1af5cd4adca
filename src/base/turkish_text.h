#pragma once

#include "base/para.h"

#include <QDate>
#include <QDateTime>
#include <QString>
#include <QVariant>

#include <optional>

// The Turkish text, number and date utilities that every screen shares. They never look at the
// machine's locale: "1.250,50" and "dd.MM.yyyy" are read and written here, the same everywhere.
namespace base {

// ---- money and numbers -------------------------------------------------------------------

inline const QString ParaFormatiKurus = QStringLiteral("#,##0.00");
inline const QString ParaFormatiTam = QStringLiteral("#,###");

// A numeric picture of the old Format function: "#,##0.00", "#,###", "#0.00", "0.00", "000",
// "#,##0", "#,###.##". "," in the picture groups thousands with "."; the decimal separator
// is ","; a "0" forces a digit, a "#" shows one only when needed, so 0 in "#,###" is "".
// The value is rounded half away from zero to the picture's decimals, on its exact value.
QString Bicimle(Para deger, const QString &bicim);
QString Bicimle(qint64 deger, const QString &bicim);
// The number of decimals that a picture shows ("#,##0.00" 2, "#,###" 0).
int BicimOndalik(const QString &bicim);
// Rounded as the picture rounds it: what formatting to the picture and reading back gives.
Para BicimeYuvarla(Para deger, const QString &bicim);

// The reader of money texts: remove every ".", trim, take "," as the decimal point and read
// the leading number. "1.250,50" is 1250,5; "12abc" is 12; "abc" and "" are 0.
Para SayiOku(const QString &metin);
// The strict reader for entry boxes: the whole text must be a number ("1.250,50", "-12",
// "0,5", "1250.50" is refused because "." only groups thousands). std::nullopt when not.
std::optional<Para> ParaCoz(const QString &metin);
// A whole number typed into a box ("12", " 7 "); nullopt for "1,5", "abc", "" or overflow.
std::optional<qint64> TamSayiCoz(const QString &metin);

// ---- amounts in words --------------------------------------------------------------------

// "BİNİKİYÜZELLİ TL ELLİ KRŞ" for 1.250,50 with kurusDahil; framed as "#...#" on request.
QString YaziyaCevir(Para tutar, bool cerceveli, bool kurusDahil);
// The same for an amount that may be an empty text or Null: those give "".
QString YaziyaCevir(const QVariant &tutar, bool cerceveli, bool kurusDahil);
// A whole number given as digits, in words: "101000" -> "YÜZBİRBİN". Not numeric -> "".
QString SayiyiYaziya(const QString &rakamlar);

// ---- words ---------------------------------------------------------------------------------

QString AyAdi(int ay);                   // "OCAK".."ARALIK", "-" otherwise
QString BuyukHarf(const QString &metin); // "iğdır ılık" -> "İĞDIR ILIK"
QString KucukHarf(const QString &metin); // "İĞDIR ILIK" -> "iğdır ılık"
// The genitive suffix of a name behind its apostrophe: "Ahmet" -> "'in", "Ali" -> "'nin",
// "AYŞE" -> "'NİN", "Doğu" -> "'nun". A name with no vowel gives "".
QString EkGetir(const QString &isim);

// ---- values that may be Null ---------------------------------------------------------------

// A field's value as text, "" for Null; trimmed unless trimsiz.
QString NullStr(const QVariant &alan, bool trimsiz = false);
// NullStr, or "0" when that text is not a number.
QString NullNum(const QVariant &alan);
// The value as a number (a money text is read as "1.250,50"); 0 when not numeric.
double SayiDegeri(const QVariant &alan);
// SayiDegeri as text in C-locale digits, with 0 given as "".
QString SifirBos(const QVariant &alan);

// ---- dates ---------------------------------------------------------------------------------

// The zero date: stands for "no date" in date fields, and is shown blank.
inline const QDateTime SifirTarih = QDateTime(QDate(1899, 12, 30), QTime(0, 0));
bool SifirTarihMi(const QDateTime &tarih);
bool SifirTarihMi(const QDate &tarih);

// The form test of a date text: ten characters, separators "/", "-" or "." at the 3rd and
// 6th places, day 1-31, month 1-12, year 1900-2100. "31.02.2004" passes; "1.1.2004" fails.
bool TarihKontrol(const QString &metin);
// A real calendar day in "dd.MM.yyyy" (or with "/" or "-"): TarihKontrol and an existing day.
std::optional<QDate> TarihOku(const QString &metin);
// "dd.MM.yyyy"; "" for an invalid date or the zero date.
QString TarihYaz(const QDate &tarih);
QString TarihYaz(const QDateTime &tarih);
// "dd.MM.yyyy HH:mm:ss"; "" for an invalid or zero date.
QString TarihSaatYaz(const QDateTime &tarih);
// DateAdd("m", n, date): whole months on; a day that the target month lacks becomes its last
// day (31.01.2024 + 1 month = 29.02.2024).
QDate AyEkle(const QDate &tarih, int ay);

} // namespace base
