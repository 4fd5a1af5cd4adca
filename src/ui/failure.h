#pragma once

#include "base/result.h"

#include <QString>

#include <functional>
#include <optional>

// Failure reporting. Every procedure that touches data ends, on failure, by handing the error
// number, its text and its "Form:Procedure" label to one of the two reporters; a failure is
// never swallowed and never repaired here: the user decides whether to go on.
namespace store {
class Database;
}

namespace ui {

// The general reporter: shows the failure under "Genel HATA" with OK and Cancel. Cancel ends
// the program; so does any answer when `devamEdilebilir` is left out. Otherwise the screen
// stays as it was.
void GenelHata(int hataNo, const QString &hataAciklama, const QString &rutinAdi,
               std::optional<bool> devamEdilebilir = std::nullopt);

// What the table-driven reporter shows for an error number.
struct HataMetni
{
    QString baslik; // the window title
    QString metin;  // the lines of the message
};
HataMetni HataMetniGetir(int hataNo, int hataSatiri, const QString &hataAciklama);

// The table-driven reporter with the friendly texts; it also writes the error table.
void HataGoster(int hataNo, int hataSatiri, const QString &hataAciklama, const QString &modul,
                const QString &obje);
// Appends a row to the error table (machine, user, module, object, code, line, text, time).
// A failure of this writing is ignored.
void HataKaydet(int hataNo, int hataSatiri, const QString &hataAciklama, const QString &modul,
                const QString &obje);

// The usual failure branch of a procedure: the label "Form:Procedure" gives module and object.
// A refusal is shown as its notice and recorded nowhere; a failure's own notice, when it has
// one, is shown before the report.
void HataBildir(const base::Error &hata);

// Shows what a rule gave back when it did not go through (a refusal as its notice, a failure
// through the reporter) and tells whether it went through.
bool passed(const base::Status &sonuc);

// The screens' side of the rights rules: the write test that tells the operator when there is
// no write right, and the rights test of a command, which reports a failure to read the rights.
bool YazmaYetkisiVar();
bool HakKontrol(store::Database &db, const QString &tool);

// The program's title, for the general reporter's message.
void setProgramAdi(const QString &ad);
QString programAdi();
// How the program ends when a reporter ends it; tests put their own in.
void setProgramBitir(std::function<void(int)> bitir);

} // namespace ui
