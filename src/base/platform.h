#pragma once

#include <QString>

// What differs between the operating systems the offices run, kept in one place.
namespace base {

// Who runs the program, as the operating system knows it: the real user id on POSIX systems,
// the account name on Windows. Never empty, whatever the environment says.
QString isletimSistemiKullanicisi();

// Waits until what was written to a file, or a rename or removal in a folder, stands on the
// disk. False when the system refused.
bool diskeYaz(const QString &dosya);
bool klasoruDiskeYaz(const QString &klasor);

} // namespace base
