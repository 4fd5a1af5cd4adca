#pragma once

#include <QList>
#include <QString>
#include <QStringList>

// The fields of a student's record, listed once: the student screen makes its boxes from this
// list and the record reads and writes the same fields. The tables' declaration in
// store/schema stays their definition; a field's size is read from it, and the list adds only
// what the declaration does not say: the caption, how the field is entered and the part of
// the record it belongs to.
namespace students {

// How a field is entered.
enum class Giris {
    Metin,      // a text, cut to the field's size
    Tarih,      // a date; blank for none
    Para,       // an amount
    Onay,       // ticked or not
    Liste,      // a text typed, or chosen among the values the students already have
    SabitListe, // one of fixed words, kept as the word
    SiraListe,  // one of fixed words, kept as its place in the list (0: none)
};

// The part of the record a field belongs to, as the student screen groups them.
enum class Bolum { Ogrenci, Hesap, Veli, Anne, Baba, Nufus };

struct OgrenciAlani
{
    QString tablo;  // Ogrenci or OgrenciNufus
    QString ad;     // the field, and the name of its box
    QString etiket; // the caption it is shown under; a tick box carries it itself
    Giris giris = Giris::Metin;
    Bolum bolum = Bolum::Ogrenci;
    QStringList secenekler = {}; // SabitListe, SiraListe: the words after the empty one
    int boyut = 0;               // the longest text a box takes (Metin, Liste); 0: no limit
};

// Every field of the student screen, in the order of the screen.
const QList<OgrenciAlani> &OgrenciAlanTablosu();
// The field of the list with that name; nullptr when the list has none.
const OgrenciAlani *OgrenciAlaniBul(const QString &ad);

// The fields of Ogrenci that the student screen keeps: those of the list and the number of
// siblings. The record lock, the first user and the fields of other screens are not among them.
const QStringList &OgrenciAlanlari();
// The fields of OgrenciNufus that the screen keeps (Donem and the key aside).
const QStringList &NufusAlanlari();

// The number of siblings in the school, counted from the sibling list when the record is saved.
inline const QString KardesSayisiAlani = QStringLiteral("Ogr_Okulda_Okuyan_Kardes_Say");

// The columns of a student's sibling list (OgrenciKardesler), in the order of Kardes's members.
struct KardesAlani
{
    QString ad;
    QString etiket;
    int boyut = 0;
};
const QList<KardesAlani> &KardesAlanlari();

} // namespace students
