#pragma once

#include "base/result.h"

#include <QByteArray>
#include <QString>

// The scrambling of user names (and of passwords that the old program stored) and the hashing
// of passwords. Names in table Sifre keep the scrambled form, so that old data matches byte for
// byte; passwords are kept as Argon2id hashes and are never shown.
namespace users {

// The two cryptographic providers of the old Windows program; they derive keys differently.
enum class Provider {
    Enhanced, // 128-bit RC4 key: the whole MD4 digest of the key text
    Base,     // 40-bit RC4 key: the first five digest bytes followed by eleven zero bytes
};

inline const QString SifreAnahtari = QStringLiteral("MKVRZTPQHWDS");
inline const QString BozukVeriHatasi
    = QStringLiteral("Data string is corrupted. Cannot be Decrypted.");
inline const QString SifrelemeHatasi
    = QStringLiteral("A critical error ocurred during the encryption process.");
inline const QString SifreCozmeHatasi
    = QStringLiteral("A critical error ocurred during the decryption process.");

// Text to bytes through Windows-1254, the Turkish ANSI code page; a character the page lacks
// becomes "?" (one per UTF-16 unit). And back; the seven bytes the page leaves undefined
// (0x81, 0x8D-0x90, 0x9D, 0x9E) read as the control character of the same number, as Windows
// reads them, so that any byte string survives the trip.
QByteArray Windows1254(const QString &metin);
QString Windows1254Coz(const QByteArray &bayt);

// The RC4 key that CryptDeriveKey derives from the MD4 digest of the key text.
QByteArray TuretilmisAnahtar(Provider provider = Provider::Enhanced);

// Sifrele: "" when the text is empty after trimming; otherwise the text (untrimmed) as
// Windows-1254 bytes, RC4-encrypted with the derived key, as upper-case hexadecimal. The trim
// is the old program's: it removes spaces only, so a text of tabs is scrambled.
// Sifrele("admin") is "B65E830A6F" (Enhanced) and "8F63694E20" (Base).
base::Result<QString> Sifrele(const QString &metin, Provider provider = Provider::Enhanced);
// SifreCoz: the inverse; reads upper- or lower-case hex. Odd length or any character that is
// not a hex digit (a sign, a prefix, a space) gives the error BozukVeriHatasi with the number
// 1001 and no label (the caller adds its own). "" gives "".
base::Result<QString> SifreCoz(const QString &hex, Provider provider = Provider::Enhanced);

// Argon2id through libsodium (crypto_pwhash_str, interactive limits), the password as UTF-8.
// When libsodium cannot start or runs out of memory the error says so, and the caller stores
// nothing: an empty or malformed stored value never verifies.
base::Result<QString> SifreOzeti(const QString &sifre);
inline constexpr int SifreOzetiHatasi = 7;
bool SifreOzetiDogrula(const QString &ozet, const QString &sifre);
// True for a stored value that is an Argon2id hash rather than an old scrambled password.
bool SifreOzetiMi(const QString &kayitli);

} // namespace users
