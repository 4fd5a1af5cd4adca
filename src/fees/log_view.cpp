#include "fees/log_view.h"

#include "base/para.h"
#include "base/turkish_text.h"
#include "store/change_log.h"
#include "store/database.h"
#include "users/session.h"

namespace fees {

namespace {

const QString s_label = QStringLiteral("Frm_Log:LogGoster");

QString islemAdi(const QString &islem)
{
    if (islem == store::LogYeniKayit) {
        return QStringLiteral("Yeni Kayıt");
    }
    if (islem == store::LogDegisiklik) {
        return QStringLiteral("Değişiklik");
    }
    if (islem == store::LogKayitSil) {
        return QStringLiteral("Kayıt Sil");
    }
    return islem;
}

QString money(const base::Para &p)
{
    return base::Bicimle(p, users::durum().ParaFormati);
}

QString date(const QDateTime &t)
{
    return t.isValid() && !base::SifirTarihMi(t) ? base::TarihYaz(t.date()) : QString();
}

QString moment(const QDateTime &t)
{
    return t.isValid() ? t.toString(QStringLiteral("dd.MM.yyyy HH:mm:ss")) : QString();
}

} // namespace

const QStringList &LogTablolari()
{
    static const QStringList s
        = {QStringLiteral("Ogrenci"), QStringLiteral("Fatura"), QStringLiteral("OgrenciAidatTanim"),
           QStringLiteral("OgrenciAidatOdeme")};
    return s;
}

base::Result<LogListesi> LogOku(store::Database &db, LogTablosu tablo, const QString &kullanici,
                                const QDate &ilk, const QDate &son)
{
    const QString log = db.table(store::Store::Log, LogTablolari().at(int(tablo)));
    // The student of an account's row, through its account; an invoice names its student.
    const QString ogrenciAnahtari = tablo == LogTablosu::Fatura
                                        ? QStringLiteral("L.OgrKayitID")
                                        : QStringLiteral("(SELECT T.OgrKayitID FROM "
                                                         "OgrenciAidatTanim T WHERE "
                                                         "T.KayitID = L.KayitID)");
    const QString ogrenci
        = QStringLiteral("(SELECT O.Ogr_Numarasi FROM Ogrenci O WHERE O.KayitID = %1), "
                         "(SELECT O.Ogr_Adi FROM Ogrenci O WHERE O.KayitID = %1), "
                         "(SELECT O.Ogr_Soyadi FROM Ogrenci O WHERE O.KayitID = %1)")
              .arg(ogrenciAnahtari);
    QString columns;
    LogListesi liste;
    switch (tablo) {
    case LogTablosu::Ogrenci:
        columns = QStringLiteral("L.Kayit_Id, L.Donem, L.Ogr_Numarasi, L.Ogr_Soyadi, L.Ogr_Adi, "
                                 "L.Ogr_Sinif");
        liste.basliklar
            = {QStringLiteral("Kayıt Id"), QStringLiteral("Dönem"), QStringLiteral("Numara"),
               QStringLiteral("Soyadı"),   QStringLiteral("Adı"),   QStringLiteral("Sınıf")};
        break;
    case LogTablosu::Fatura:
        columns = ogrenci
                  + QStringLiteral(", L.OgrKayitID, L.FaturaTarihi, L.FaturaTutar, L.Iskonta, "
                                   "L.OdenenTutar, L.FaturaNo, L.YTLCevrim, L.KDVOrani, "
                                   "L.KDVTutari, L.KDVsizTutar, L.ID, L.FaturaAdiSoyadi, "
                                   "L.FaturaAdres");
        liste.basliklar = {QStringLiteral("Öğr. No"),         QStringLiteral("Öğr. Adı"),
                           QStringLiteral("Öğr. Soyadı"),     QStringLiteral("Öğr. Kayıt Id"),
                           QStringLiteral("Fatura Tarihi"),   QStringLiteral("Fatura Tutarı"),
                           QStringLiteral("İskonto"),         QStringLiteral("Ödenen Tutar"),
                           QStringLiteral("Fatura No"),       QStringLiteral("Ytl Çevrim"),
                           QStringLiteral("KDV Oranı"),       QStringLiteral("KDV Tutarı"),
                           QStringLiteral("KDVsiz Tutar"),    QStringLiteral("ID"),
                           QStringLiteral("Fatura Ad-Soyad"), QStringLiteral("Fatura Adres")};
        break;
    case LogTablosu::OgrenciAidatTanim:
        columns = ogrenci
                  + QStringLiteral(", L.Borc, L.Kalan, L.AidatID, L.IskontoTutari, L.AidatTanim");
        liste.basliklar = {QStringLiteral("Öğr. No"),        QStringLiteral("Öğr. Adı"),
                           QStringLiteral("Öğr. Soyadı"),    QStringLiteral("Borç"),
                           QStringLiteral("Kalan"),          QStringLiteral("Aidat No"),
                           QStringLiteral("İskonto Tutarı"), QStringLiteral("Aidat Adı")};
        break;
    case LogTablosu::OgrenciAidatOdeme:
        columns = ogrenci
                  + QStringLiteral(", L.Sira, L.OdemeTarihi, L.Odenen, L.Aciklama, L.OdemeSekli, "
                                   "L.PesinatTaksitID, L.FisNo");
        liste.basliklar = {QStringLiteral("Öğr. No"),      QStringLiteral("Öğr. Adı"),
                           QStringLiteral("Öğr. Soyadı"),  QStringLiteral("Sıra"),
                           QStringLiteral("Ödeme Tarihi"), QStringLiteral("Ödeme Tutarı"),
                           QStringLiteral("Açıklama"),     QStringLiteral("Ödeme Şekli"),
                           QStringLiteral("Peşinat No"),   QStringLiteral("Fiş No")};
        break;
    }
    liste.basliklar << QStringLiteral("Kullanıcı") << QStringLiteral("Tarih")
                    << QStringLiteral("İşlem Türü");
    store::Query q(db, QStringLiteral("SELECT %1, L.Kullanici, L.Tarih, L.Islem_Turu FROM %2 L "
                                      "WHERE L.Tarih >= ? AND L.Tarih < ? AND L.Kullanici = ? "
                                      "ORDER BY L.Tarih")
                           .arg(columns, log));
    q.bind(QDateTime(ilk, QTime(0, 0)))
        .bind(QDateTime(son.addDays(1), QTime(0, 0)))
        .bind(kullanici);
    if (!q.exec()) {
        return q.error(s_label);
    }
    const int n = int(liste.basliklar.size());
    // Which columns hold money, a date, a moment, a kind of payment.
    const auto kind = [&](int c) -> QChar {
        const QString &b = liste.basliklar.at(c);
        if (b == QLatin1String("Tarih")) {
            return u'M';
        }
        if (b.endsWith(QStringLiteral("Tarihi"))) {
            return u'D';
        }
        if (b == QStringLiteral("Ödeme Şekli")) {
            return u'K';
        }
        if (b.contains(QStringLiteral("Tutar")) || b == QStringLiteral("Borç")
            || b == QStringLiteral("Kalan") || b == QStringLiteral("İskonto")) {
            return u'P';
        }
        return u'T';
    };
    while (q.next()) {
        QStringList satir;
        for (int c = 0; c < n; ++c) {
            switch (kind(c).unicode()) {
            case 'M':
                satir << moment(q.dateTime(c));
                break;
            case 'D':
                satir << date(q.dateTime(c));
                break;
            case 'K':
                satir << users::OdemeSekliAdi(q.text(c));
                break;
            case 'P':
                satir << money(q.para(c));
                break;
            default:
                satir << (c == n - 1 ? islemAdi(q.text(c)) : q.text(c));
            }
        }
        liste.satirlar.append(satir);
    }
    return liste;
}

} // namespace fees
