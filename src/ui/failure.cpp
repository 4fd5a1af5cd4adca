#include "ui/failure.h"

#include "store/database.h"
#include "store/error_log.h"
#include "ui/message.h"
#include "users/rights.h"
#include "users/session.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QRegularExpression>
#include <QSysInfo>

#include <cstdlib>

namespace ui {

namespace {

QString &titleText()
{
    static QString s_title = QStringLiteral("Zerna Vortel Programı");
    return s_title;
}

std::function<void(int)> &endProgram()
{
    // Ends at once: whatever was not committed is rolled back by the store at the next start.
    static std::function<void(int)> s_end = [](int code) { std::_Exit(code); };
    return s_end;
}

QString lines(const QStringList &l)
{
    return l.join(QLatin1Char('\n'));
}

// "Form:Procedure" as the error table keeps it: module and object.
QPair<QString, QString> moduleAndObject(const QString &label)
{
    const int colon = label.indexOf(QLatin1Char(':'));
    if (colon < 0)
        return {label, QString()};
    return {label.left(colon), label.mid(colon + 1)};
}

} // namespace

void setProgramAdi(const QString &ad)
{
    titleText() = ad;
}

QString programAdi()
{
    return titleText();
}

void setProgramBitir(std::function<void(int)> bitir)
{
    endProgram() = std::move(bitir);
}

void GenelHata(int hataNo, const QString &hataAciklama, const QString &rutinAdi,
               std::optional<bool> devamEdilebilir)
{
    QCoreApplication::processEvents();
    const QString text = lines({QStringLiteral(" HATA OLUSAN "), QString(),
                                QStringLiteral(" Program Adi    : ") + programAdi(),
                                QStringLiteral(" Rutin Adi      : ") + rutinAdi,
                                QStringLiteral(" Hata Kodu      : ") + QString::number(hataNo),
                                QStringLiteral(" Hata Aciklamasi: ") + hataAciklama});
    const QPair<QString, QString> where = moduleAndObject(rutinAdi);
    HataKaydet(hataNo, 0, hataAciklama, where.first, where.second);
    const Answer answer
        = show(Message{QStringLiteral("Genel HATA"), text, Icon::Critical, Buttons::OkCancel});
    if (answer == Answer::Cancel || !devamEdilebilir.has_value())
        endProgram()(1);
}

HataMetni HataMetniGetir(int hataNo, int hataSatiri, const QString &hataAciklama)
{
    const QString zerna = QStringLiteral("Zerna");
    switch (hataNo) {
    case 52:
        return {zerna, lines({QStringLiteral("Dataların Yükleneceği Dizin Bulunamadı"),
                              QStringLiteral("Lütfen Dizinin Doğruluğunu Kontrol Ediniz.")})};
    case 3260: {
        // The holder of the record stands between quotes after "user", where the engine names
        // one; where it does not, nobody is named.
        static const QRegularExpression quoted(QStringLiteral("user\\s*'([^']*)'"));
        const QRegularExpressionMatch m = quoted.match(hataAciklama);
        const QString holder = m.hasMatch()
                                   ? QStringLiteral("Şu Anda Bu Kaydı  ") + m.captured(1)
                                         + QStringLiteral("   isimli Kullanıcı Kullanıyor")
                                   : QStringLiteral("Şu Anda Bu Kayıt Başka Bir İş İstasyonunda "
                                                    "Kullanılıyor");
        return {zerna, lines({QStringLiteral("Genel Sistem Hatası"), holder,
                              QStringLiteral("Lütfen Bu Bölümden Çıkmasını Sağlayınız")})};
    }
    case 91:
        return {zerna,
                lines({QStringLiteral("Programda İçsel Bir Hata Oluştu"),
                       QStringLiteral("Lütfen Bu Hatanın Oluştuğu Modulu ve Şekli Not Edip "
                                      "Bildiriniz. Lütfen Bulunduğunuz Modülden Çıkıp Tekrar "
                                      "Girmeyi Deneyiniz.")})};
    case 67:
        return {zerna, lines({QStringLiteral("Windows'un Arka Planında Çok Fazla Dosya Var"),
                              QStringLiteral("Lütfen Arka Plandaki Dosyaları Kapatınız")})};
    case 61:
        return {zerna, lines({QStringLiteral("Dataların Saklanacağı Disk Dolmuş Olabilir."),
                              QStringLiteral("Lütfen Dataların Saklandığı Diski Boşaltınız.")})};
    case 70:
    case 76:
        return {zerna,
                lines({QStringLiteral("Tanımlanmış Bulunan Data Yolu Hatalı"),
                       QStringLiteral("Lütfen Dataların Saklanacağı Dizini Yeniden Belirtiniz.")})};
    case 6:
        return {zerna, lines({QStringLiteral("Bir Bilgiyi Değerinden Çok Fazla Girdiniz."),
                              QStringLiteral("Lütfen Veri Girişlerinizi Kontrol Ediniz.")})};
    case 7:
        return {zerna,
                lines({QStringLiteral("Bilgisayarınızın  Belleği Doldu"),
                       QStringLiteral("Lütfen Windows'un Arka Planda Çalışan Dosyalarını Kapatın "
                                      "Ve Yeniden Deneyin")})};
    case 53:
        return {zerna, lines({QStringLiteral("Belirtilen Dizinde Dosya Bulunamadı"),
                              QStringLiteral("Lütfen Dizinin Doğruluğunu Kontrol Ediniz.")})};
    case 48:
    case 49:
        return {zerna, lines({QStringLiteral("Kullanmakta Olduğunuz DLL Dosyaları Bozulmuş"),
                              QStringLiteral("Lütfen Yeni Dosyaları Kopyalayınız.")})};
    case 3075:
        return {zerna, lines({QStringLiteral("Sorgulama Biçiniz Yanlış."),
                              QStringLiteral("Lütfen Sorgulamanızı Düzeltiniz.")})};
    case 3061:
        return {zerna, lines({QStringLiteral("Şu an Kullanmakta Olduğunuz Data Yapısı Yanlış"),
                              QStringLiteral("Lütfen Data Yolunuzu Değiştiriniz.")})};
    case 340:
        return {QStringLiteral("Zerna Ostel"), QStringLiteral("Programda İçsel Bir Hata Oluştu")};
    case 3044: {
        const QString folder = store::hasDefaultDatabase()
                                   ? store::defaultDatabase().settings().describe()
                                   : QDir::toNativeSeparators(users::durum().UygulamaYolu);
        return {zerna, lines({QStringLiteral("Çalışma Dizininiz Hatalıdır."),
                              QStringLiteral("Çalışma Dizini :") + folder + QLatin1Char('\\'),
                              QStringLiteral(
                                  "Bu Dizinde Size Dosya Açma Yetkisi Verilmemiş. Hard Diskiniz "
                                  "Dolmuş Olabilir. Lütfen Sistem Yetkilisine Danışın."),
                              QStringLiteral("Hata Kodu      : ") + QString::number(hataNo),
                              QStringLiteral("Hata Açıklaması: ") + hataAciklama,
                              QStringLiteral("Lütfen Dizin Düzeltme Programını Çalıştırınız.")})};
    }
    case 3024:
        return {zerna,
                QStringLiteral("Bu Modul ile İlgili Dosya Bulunamadı Lütfen Sistem Yetkilisine "
                               "Danışınız.")};
    default:
        return {zerna, lines({QStringLiteral("Programda Hata Oluştu"),
                              QStringLiteral("Hata Kodu: ") + QString::number(hataNo),
                              QStringLiteral("Hata Satırı ") + QString::number(hataSatiri),
                              QStringLiteral("Hata Açıklaması: ") + hataAciklama})};
    }
}

void HataGoster(int hataNo, int hataSatiri, const QString &hataAciklama, const QString &modul,
                const QString &obje)
{
    HataKaydet(hataNo, hataSatiri, hataAciklama, modul, obje);
    const HataMetni m = HataMetniGetir(hataNo, hataSatiri, hataAciklama);
    notify(m.baslik, m.metin, Icon::Critical);
}

void HataKaydet(int hataNo, int hataSatiri, const QString &hataAciklama, const QString &modul,
                const QString &obje)
{
    if (!store::hasDefaultDatabase())
        return;
    QString machine = QSysInfo::machineHostName();
    if (machine.isEmpty())
        machine = QStringLiteral("bilinmiyor");
    const store::ErrorRow row{
        machine,      users::durum().AktifKullanici, modul, obje, hataNo, hataSatiri,
        hataAciklama, QDateTime::currentDateTime()};
    (void)store::writeErrorRow(store::defaultDatabase().settings(), row);
}

void HataBildir(const base::Error &hata)
{
    if (hata.red) {
        notify(*hata.red);
        return;
    }
    if (hata.bildiri)
        notify(*hata.bildiri);
    const QPair<QString, QString> where = moduleAndObject(hata.label);
    HataGoster(hata.number, hata.line, hata.text, where.first, where.second);
}

} // namespace ui

namespace ui {

bool passed(const base::Status &sonuc)
{
    if (sonuc)
        return true;
    HataBildir(sonuc.error());
    return false;
}

bool YazmaYetkisiVar()
{
    return passed(users::YazmaYetkisiVar());
}

bool HakKontrol(store::Database &db, const QString &tool)
{
    const base::Result<bool> hak = users::HakKontrol(db, tool);
    if (!hak) {
        HataBildir(hak.error());
        return false;
    }
    return *hak;
}

} // namespace ui
