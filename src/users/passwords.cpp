#include "users/passwords.h"

#include <QCryptographicHash>
#include <QLatin1String>

#include <sodium.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <numeric>
#include <optional>

namespace users {

namespace {

// The error number of BozukVeriHatasi, as the header promises it.
constexpr int BozukVeriHataNo = 1001;

// The Enhanced provider keeps the whole MD4 digest as the RC4 key. The Base provider makes a
// 40-bit key: five digest bytes, then the eleven zero bytes of salt that CryptoAPI appends to
// every 40-bit key unless CRYPT_NO_SALT is given. RC4 is keyed with all sixteen bytes, so the
// zeros matter: the five bytes alone give another key stream.
constexpr qsizetype TamAnahtarBoyu = 16;
constexpr qsizetype KisaAnahtarBoyu = 5;

// Windows-1254 byte -> UTF-16 unit. Latin-1, except 0x80-0x9F and six Turkish letters.
constexpr std::array<char16_t, 256> windows1254Tablosu()
{
    std::array<char16_t, 256> tablo{};
    for (int i = 0; i < 256; ++i) {
        tablo[i] = char16_t(i);
    }
    // 0x80-0x9F. The bytes the page leaves undefined keep the control character of their own
    // number (0x81, 0x8D, 0x8E, 0x8F, 0x90, 0x9D, 0x9E).
    constexpr char16_t ustBlok[32] = {
        0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, // 0x80
        0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x008E, 0x008F, // 0x88
        0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014, // 0x90
        0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x009E, 0x0178, // 0x98
    };
    for (int i = 0; i < 32; ++i) {
        tablo[0x80 + i] = ustBlok[i];
    }
    tablo[0xD0] = 0x011E; // Ğ in place of Ð
    tablo[0xDD] = 0x0130; // İ in place of Ý
    tablo[0xDE] = 0x015E; // Ş in place of Þ
    tablo[0xF0] = 0x011F; // ğ in place of ð
    tablo[0xFD] = 0x0131; // ı in place of ý
    tablo[0xFE] = 0x015F; // ş in place of þ
    return tablo;
}

constexpr std::array<char16_t, 256> s_windows1254 = windows1254Tablosu();

char windows1254Bayti(char16_t harf)
{
    if (harf < 0x80) {
        return char(harf);
    }
    for (int bayt = 0x80; bayt < 256; ++bayt) {
        if (s_windows1254[bayt] == harf) {
            return char(bayt);
        }
    }
    return '?';
}

// RC4 over the whole text in one piece, as CryptEncrypt with Final set does it. Encrypting and
// decrypting are the same step.
QByteArray rc4(const QByteArray &anahtar, const QByteArray &veri)
{
    std::array<unsigned char, 256> s;
    std::iota(s.begin(), s.end(), 0);
    unsigned char j = 0;
    for (int i = 0; i < 256; ++i) {
        const auto k = static_cast<unsigned char>(anahtar[i % anahtar.size()]);
        j = static_cast<unsigned char>(j + s[i] + k);
        std::swap(s[i], s[j]);
    }

    QByteArray sonuc(veri.size(), Qt::Uninitialized);
    unsigned char i = 0;
    j = 0;
    for (qsizetype n = 0; n < veri.size(); ++n) {
        i = static_cast<unsigned char>(i + 1);
        j = static_cast<unsigned char>(j + s[i]);
        std::swap(s[i], s[j]);
        const unsigned char akis = s[static_cast<unsigned char>(s[i] + s[j])];
        sonuc[n] = char(static_cast<unsigned char>(veri[n]) ^ akis);
    }
    return sonuc;
}

// The old program's Trim removed spaces only; the test is whether anything else is left.
bool yalnizBosluk(const QString &metin)
{
    return std::all_of(metin.cbegin(), metin.cend(), [](QChar c) { return c == u' '; });
}

int hexDegeri(QChar c)
{
    const char16_t u = c.unicode();
    if (u >= u'0' && u <= u'9') {
        return u - u'0';
    }
    if (u >= u'A' && u <= u'F') {
        return u - u'A' + 10;
    }
    if (u >= u'a' && u <= u'f') {
        return u - u'a' + 10;
    }
    return -1;
}

// Strict: two ASCII hex digits per byte and nothing else, unlike QByteArray::fromHex, which
// skips what it does not know.
std::optional<QByteArray> hexCoz(const QString &hex)
{
    if (hex.size() % 2 != 0) {
        return std::nullopt;
    }
    QByteArray bayt(hex.size() / 2, Qt::Uninitialized);
    for (qsizetype n = 0; n < bayt.size(); ++n) {
        const int yuksek = hexDegeri(hex[2 * n]);
        const int dusuk = hexDegeri(hex[2 * n + 1]);
        if (yuksek < 0 || dusuk < 0) {
            return std::nullopt;
        }
        bayt[n] = char(yuksek * 16 + dusuk);
    }
    return bayt;
}

bool sodiumHazir()
{
    static const bool hazir = sodium_init() >= 0;
    return hazir;
}

// The password leaves no copy of its UTF-8 bytes behind once libsodium is done with it.
class Utf8Sifre
{
public:
    explicit Utf8Sifre(const QString &sifre)
        : m_bayt(sifre.toUtf8())
    {}
    ~Utf8Sifre() { sodium_memzero(m_bayt.data(), static_cast<size_t>(m_bayt.size())); }
    Utf8Sifre(const Utf8Sifre &) = delete;
    Utf8Sifre &operator=(const Utf8Sifre &) = delete;

    const char *veri() const { return m_bayt.constData(); }
    unsigned long long boy() const { return static_cast<unsigned long long>(m_bayt.size()); }

private:
    QByteArray m_bayt;
};

} // namespace

QByteArray Windows1254(const QString &metin)
{
    QByteArray bayt(metin.size(), Qt::Uninitialized);
    for (qsizetype n = 0; n < metin.size(); ++n) {
        bayt[n] = windows1254Bayti(metin[n].unicode());
    }
    return bayt;
}

QString Windows1254Coz(const QByteArray &bayt)
{
    QString metin(bayt.size(), Qt::Uninitialized);
    for (qsizetype n = 0; n < bayt.size(); ++n) {
        metin[n] = QChar(s_windows1254[static_cast<unsigned char>(bayt[n])]);
    }
    return metin;
}

QByteArray TuretilmisAnahtar(Provider provider)
{
    const QByteArray ozet
        = QCryptographicHash::hash(Windows1254(SifreAnahtari), QCryptographicHash::Md4);
    if (provider == Provider::Base) {
        return ozet.left(KisaAnahtarBoyu) + QByteArray(TamAnahtarBoyu - KisaAnahtarBoyu, '\0');
    }
    return ozet.left(TamAnahtarBoyu);
}

base::Result<QString> Sifrele(const QString &metin, Provider provider)
{
    if (yalnizBosluk(metin)) {
        return QString();
    }
    const QByteArray sifreli = rc4(TuretilmisAnahtar(provider), Windows1254(metin));
    return QString::fromLatin1(sifreli.toHex().toUpper());
}

base::Result<QString> SifreCoz(const QString &hex, Provider provider)
{
    const std::optional<QByteArray> sifreli = hexCoz(hex);
    if (!sifreli) {
        base::Error hata;
        hata.number = BozukVeriHataNo;
        hata.text = BozukVeriHatasi;
        return hata;
    }
    return Windows1254Coz(rc4(TuretilmisAnahtar(provider), *sifreli));
}

base::Result<QString> SifreOzeti(const QString &sifre)
{
    const base::Error yetersiz{
        SifreOzetiHatasi,
        QStringLiteral("Şifre saklanamadı: bilgisayarın belleği yetersiz. "
                       "Lütfen diğer programları kapatıp yeniden deneyiniz."),
        QString()};
    if (!sodiumHazir()) {
        return yetersiz;
    }
    const Utf8Sifre utf8(sifre);
    char ozet[crypto_pwhash_STRBYTES];
    if (crypto_pwhash_str(ozet, utf8.veri(), utf8.boy(), crypto_pwhash_OPSLIMIT_INTERACTIVE,
                          crypto_pwhash_MEMLIMIT_INTERACTIVE)
        != 0) {
        return yetersiz;
    }
    const QString sonuc = QString::fromLatin1(ozet);
    if (!SifreOzetiMi(sonuc)) {
        return yetersiz;
    }
    return sonuc;
}

bool SifreOzetiDogrula(const QString &ozet, const QString &sifre)
{
    if (!SifreOzetiMi(ozet) || !sodiumHazir()) {
        return false;
    }
    // libsodium reads a NUL-terminated string of at most crypto_pwhash_STRBYTES bytes.
    const QByteArray kayit = ozet.toLatin1();
    if (kayit.size() >= qsizetype(crypto_pwhash_STRBYTES)) {
        return false;
    }
    char tampon[crypto_pwhash_STRBYTES] = {};
    std::memcpy(tampon, kayit.constData(), static_cast<size_t>(kayit.size()));
    const Utf8Sifre utf8(sifre);
    return crypto_pwhash_str_verify(tampon, utf8.veri(), utf8.boy()) == 0;
}

bool SifreOzetiMi(const QString &kayitli)
{
    return kayitli.startsWith(QLatin1String("$argon2id$"));
}

} // namespace users
