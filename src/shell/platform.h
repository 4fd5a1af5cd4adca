#pragma once

#include <QString>

// What differs between the operating systems the offices run, kept in one place.
namespace shell {

// Who runs the program, as the operating system knows it: the real user id on POSIX systems,
// the account name on Windows. Never empty, whatever the environment says.
QString isletimSistemiKullanicisi();

} // namespace shell
