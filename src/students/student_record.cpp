#include "students/student_record.h"

#include "base/turkish_text.h"
#include "fees/ledger.h"
#include "store/change_log.h"
#include "store/database.h"
#include "store/schema.h"
#include "users/secrets.h"
#include "users/session.h"

#include <QBuffer>
#include <QImage>
#include <QImageReader>

namespace students {

namespace {

const QString OgrenciTablo = QStringLiteral("Ogrenci");
const QString NufusTablo = QStringLiteral("OgrenciNufus");

QString label(const char *procedure)
{
    return QStringLiteral("FRMOGRENCI:") + QString::fromLatin1(procedure);
}

// A text as it is stored: trimmed, cut to the field's size, and "" rather than Null.
QString stored(const QString &value, int size)
{
    QString v = value.trimmed();
    if (size > 0) {
        v = v.left(size);
    }
    return v.isEmpty() ? QStringLiteral("") : v;
}

QVariant toStored(const QString &table, const QString &field, const QVariant &value, bool zeroDate)
{
    switch (alanTuru(table, field)) {
    case AlanTuru::Metin:
        return stored(value.toString(), store::schema::textSize(store::Store::Year, table, field));
    case AlanTuru::Tarih: {
        const QDate d = value.toDate();
        if (d.isValid() && !base::SifirTarihMi(d)) {
            return QDateTime(d, QTime(0, 0));
        }
        return zeroDate ? QVariant(base::SifirTarih) : QVariant(QMetaType(QMetaType::QDateTime));
    }
    case AlanTuru::Para:
        return QVariant(value.value<base::Para>().raw());
    case AlanTuru::Sayi: {
        const store::schema::Field *f = store::schema::field(store::Store::Year, table, field);
        qint64 n = value.toLongLong();
        if (f && f->type == store::schema::FieldType::Byte) {
            n = qBound(qint64(0), n, qint64(255));
        }
        return QVariant(n);
    }
    }
    return value;
}

void bindValue(store::Query &q, const QVariant &v)
{
    if (v.metaType().id() == QMetaType::QDateTime) {
        q.bind(v.toDateTime()); // an invalid one goes in as Null
    } else {
        q.bind(v);
    }
}

QVariant fromStored(const store::Query &q, const QString &table, const QString &field)
{
    switch (alanTuru(table, field)) {
    case AlanTuru::Metin:
        return q.text(field);
    case AlanTuru::Tarih: {
        const QDateTime t = q.dateTime(field);
        return t.isValid() && !base::SifirTarihMi(t) ? t.date() : QDate();
    }
    case AlanTuru::Para:
        return QVariant::fromValue(q.para(field));
    case AlanTuru::Sayi:
        return q.integer(field);
    }
    return QVariant();
}

QStringList placeholders(int n)
{
    QStringList r;
    for (int i = 0; i < n; ++i) {
        r << QStringLiteral("?");
    }
    return r;
}

QStringList assignments(const QStringList &fields)
{
    QStringList r;
    for (const QString &f : fields) {
        r << f + QStringLiteral(" = ?");
    }
    return r;
}

base::Result<std::optional<qint64>> firstKey(store::Query &q, const QString &where)
{
    if (!q.exec()) {
        return q.error(where);
    }
    if (!q.next()) {
        return std::optional<qint64>();
    }
    return std::optional<qint64>(q.integer(0));
}

// Writes the registry row, the notes, the siblings and the picture of a saved student.
base::Status writeParts(store::Database &db, qint64 key, const OgrenciKaydi &k,
                        const QString &donem, const QString &where)
{
    const QStringList nf = NufusAlanlari();
    {
        store::Query update(
            db, QStringLiteral("UPDATE OgrenciNufus SET %1, Donem = ? WHERE KayitID = ?")
                    .arg(assignments(nf).join(QStringLiteral(", "))));
        for (const QString &f : nf) {
            bindValue(update, toStored(NufusTablo, f, k.nufus.value(f), true));
        }
        update.bind(donem).bind(key);
        if (!update.exec()) {
            return update.error(where);
        }
        if (update.rowsAffected() == 0) {
            store::Query insert(db,
                                QStringLiteral("INSERT INTO OgrenciNufus (KayitID, Donem, %1) "
                                               "VALUES (?, ?, %2)")
                                    .arg(nf.join(QStringLiteral(", ")),
                                         placeholders(int(nf.size())).join(QStringLiteral(", "))));
            insert.bind(key).bind(donem);
            for (const QString &f : nf) {
                bindValue(insert, toStored(NufusTablo, f, k.nufus.value(f), true));
            }
            if (!insert.exec()) {
                return insert.error(where);
            }
        }
    }
    {
        const QString ozel = k.ozelBilgi.isEmpty() ? QStringLiteral("") : k.ozelBilgi;
        store::Query update(
            db, QStringLiteral("UPDATE OgrenciOzel SET OzelBilgi = ? WHERE KayitID = ?"));
        update.bind(ozel).bind(key);
        if (!update.exec()) {
            return update.error(where);
        }
        if (update.rowsAffected() == 0) {
            store::Query insert(db, QStringLiteral("INSERT INTO OgrenciOzel (KayitID, OzelBilgi) "
                                                   "VALUES (?, ?)"));
            insert.bind(key).bind(ozel);
            if (!insert.exec()) {
                return insert.error(where);
            }
        }
    }
    {
        store::Query remove(db, QStringLiteral("DELETE FROM OgrenciKardesler WHERE OgrAnaNo = ?"));
        remove.bind(key);
        if (!remove.exec()) {
            return remove.error(where);
        }
        const QList<KardesAlani> &kf = KardesAlanlari();
        for (const Kardes &s : k.kardesler) {
            if (s.ad.trimmed().isEmpty()) {
                continue;
            }
            auto orDash = [](const QString &v) { return v.isEmpty() ? QStringLiteral("-") : v; };
            store::Query insert(db, QStringLiteral("INSERT INTO OgrenciKardesler (OgrAnaNo, %1, "
                                                   "%2, %3, %4) VALUES (?, ?, ?, ?, ?)")
                                        .arg(kf[0].ad, kf[1].ad, kf[2].ad, kf[3].ad));
            insert.bind(key)
                .bind(stored(s.ad, kf[0].boyut))
                .bind(stored(s.soyad, kf[1].boyut))
                .bind(orDash(stored(s.okul, kf[2].boyut)))
                .bind(orDash(stored(s.sinif, kf[3].boyut)));
            if (!insert.exec()) {
                return insert.error(where);
            }
        }
    }
    {
        const QString calisma = FotografCalisma(db);
        store::Query remove(db, QStringLiteral("DELETE FROM OgrenciFotograf WHERE Calisma = ? "
                                               "AND KayitID = ?"));
        remove.bind(calisma).bind(key);
        if (!remove.exec()) {
            return remove.error(where);
        }
        if (!k.resim.isEmpty()) {
            store::Query insert(db, QStringLiteral("INSERT INTO OgrenciFotograf (Calisma, KayitID, "
                                                   "Resim) VALUES (?, ?, ?)"));
            insert.bind(calisma).bind(key).bind(QVariant(k.resim));
            if (!insert.exec()) {
                return insert.error(where);
            }
        }
    }
    return {};
}

// Deletes the fee accounts of a student with their installments and payments, and with
// `invoices` his invoices too.
base::Status deleteAccounts(store::Database &db, qint64 key, bool invoices, const QString &where)
{
    if (base::Status s = fees::OgrenciHesaplariniSil(db, key, where); !s) {
        return s;
    }
    if (invoices) {
        store::Query q(db, QStringLiteral("DELETE FROM Fatura WHERE OgrKayitID = ?"));
        q.bind(key);
        if (!q.exec()) {
            return q.error(where);
        }
    }
    return {};
}

} // namespace

QString KodAciklamasi(const QString &alan, const QString &deger)
{
    // Identifiers are upper-cased as ASCII: a Turkish upper case would make "İ" of their "i".
    const QString f = alan.trimmed().toUpper();
    const QString v = deger.trimmed();
    auto pick = [&v](const QStringList &words) {
        bool ok = false;
        const int i = v.toInt(&ok);
        return ok && i >= 0 && i < words.size() ? words.at(i) : v;
    };
    if (f == QLatin1String("OGR_GELDIGIOKULTURU")) {
        return pick({QString(), QStringLiteral("Meslek Lisesi"), QStringLiteral("Genel Lise"),
                     QStringLiteral("Diğer")});
    }
    if (f == QLatin1String("OGR_NAKILDURUMU")) {
        return pick({QString(), QStringLiteral("SINAVSIZ"), QStringLiteral("SINAVLA")});
    }
    if (f == QLatin1String("OGR_MEZUN_SEHIRKOY")) {
        if (v == QLatin1String("S")) {
            return QStringLiteral("ŞEHİR");
        }
        return v == QLatin1String("K") ? QStringLiteral("KÖY") : v;
    }
    if (f == QLatin1String("OGR_ANNE_SAG") || f == QLatin1String("OGR_BABA_SAG")) {
        return v == QLatin1String("H") ? QStringLiteral("HAYIR") : QStringLiteral("EVET");
    }
    if (f == QLatin1String("OGR_ANNE_BABA_AYRI")) {
        return v == QLatin1String("E") ? QStringLiteral("EVET") : QStringLiteral("HAYIR");
    }
    for (const char *yesNo :
         {"OGR_BURSLU", "OGR_YEMEK", "OGR_SERVIS", "OGR_PARALI_YATILI", "OGR_PARASIZ_YATILI"}) {
        if (f == QLatin1String(yesNo)) {
            return v == QLatin1String("1") ? QStringLiteral("EVET") : QStringLiteral("HAYIR");
        }
    }
    if (f == QLatin1String("OGR_YATILI")) {
        return v == QLatin1String("1") ? QStringLiteral("YATILI") : QStringLiteral("GÜNDÜZLÜ");
    }
    return deger;
}

AlanTuru alanTuru(const QString &tablo, const QString &alan)
{
    using T = store::schema::FieldType;
    const store::schema::Field *f = store::schema::field(store::Store::Year, tablo, alan);
    if (!f) {
        return AlanTuru::Metin;
    }
    switch (f->type) {
    case T::Text:
    case T::Memo:
        return AlanTuru::Metin;
    case T::Date:
        return AlanTuru::Tarih;
    case T::Money:
        return AlanTuru::Para;
    default:
        return AlanTuru::Sayi;
    }
}

// ---- reading -------------------------------------------------------------------------------

base::Result<std::optional<OgrenciKaydi>> OgrenciOku(store::Database &db, qint64 kayitId)
{
    const QString where = label("OgrenciGoster");
    OgrenciKaydi k;
    {
        store::Query q(db, QStringLiteral("SELECT * FROM Ogrenci WHERE KayitID = ?"));
        q.bind(kayitId);
        if (!q.exec()) {
            return q.error(where);
        }
        if (!q.next()) {
            return std::optional<OgrenciKaydi>();
        }
        k.kayitId = kayitId;
        for (const QString &f : OgrenciAlanlari()) {
            k.ogrenci.insert(f, fromStored(q, OgrenciTablo, f));
        }
        // The card number is kept encrypted; the record carries it in clear, and the screen
        // decides who sees it.
        k.ogrenci.insert(KartNoAlani, users::GizliOku(db, k.ogrenci.value(KartNoAlani).toString()));
        k.ilkKullanici = q.text(QStringLiteral("Ogr_Islem_Yapan_Kullanici_Ilk"));
        k.islemYapan = q.text(QStringLiteral("Ogr_Islem_Yapan_Kullanici"));
    }
    {
        store::Query q(db, QStringLiteral("SELECT * FROM OgrenciNufus WHERE KayitID = ?"));
        q.bind(kayitId);
        if (!q.exec()) {
            return q.error(where);
        }
        const bool found = q.next();
        for (const QString &f : NufusAlanlari()) {
            k.nufus.insert(f, found ? fromStored(q, NufusTablo, f)
                                    : (alanTuru(NufusTablo, f) == AlanTuru::Tarih
                                           ? QVariant(QDate())
                                           : QVariant(QString())));
        }
    }
    {
        store::Query q(db, QStringLiteral("SELECT OzelBilgi FROM OgrenciOzel WHERE KayitID = ?"));
        q.bind(kayitId);
        if (!q.exec()) {
            return q.error(where);
        }
        if (q.next()) {
            k.ozelBilgi = base::NullStr(q.value(0), true);
        }
    }
    {
        const QList<KardesAlani> &kf = KardesAlanlari();
        store::Query q(db, QStringLiteral("SELECT %1, %2, %3, %4 FROM OgrenciKardesler WHERE "
                                          "OgrAnaNo = ?")
                               .arg(kf[0].ad, kf[1].ad, kf[2].ad, kf[3].ad));
        q.bind(kayitId);
        if (!q.exec()) {
            return q.error(where);
        }
        while (q.next()) {
            k.kardesler.append(Kardes{q.text(0), q.text(1), q.text(2), q.text(3)});
        }
    }
    {
        store::Query q(db, QStringLiteral("SELECT Resim FROM OgrenciFotograf WHERE Calisma = ? "
                                          "AND KayitID = ?"));
        q.bind(FotografCalisma(db)).bind(kayitId);
        if (!q.exec()) {
            return q.error(where);
        }
        if (q.next()) {
            k.resim = q.value(0).toByteArray();
        }
    }
    return std::optional<OgrenciKaydi>(k);
}

base::Result<std::optional<qint64>> NumaradanBul(store::Database &db, qint64 numara)
{
    store::Query q(db, QStringLiteral("SELECT KayitID FROM Ogrenci WHERE Ogr_Numarasi = ? "
                                      "ORDER BY KayitID LIMIT 1"));
    q.bind(numara);
    return firstKey(q, label("OgrenciGoster"));
}

base::Result<std::optional<qint64>> AyniOgrenciyiBul(store::Database &db, qint64 numara,
                                                     const QString &soyadi, const QString &adi)
{
    store::Query q(db, QStringLiteral("SELECT KayitID FROM Ogrenci WHERE Ogr_Numarasi = ? AND "
                                      "Ogr_Soyadi = ? AND Ogr_Adi = ? ORDER BY KayitID LIMIT 1"));
    q.bind(numara).bind(stored(soyadi, 20)).bind(stored(adi, 20));
    return firstKey(q, label("OgrenciKaydet"));
}

base::Result<QStringList> FarkliDegerler(store::Database &db, const QString &alan, bool bosDahil,
                                         const QString &hataEtiketi)
{
    const QString where = hataEtiketi.isEmpty() ? label("AlanBolumYabancidilCombo") : hataEtiketi;
    // The field is one of the screen's own, never a typed text.
    if (!OgrenciAlanlari().contains(alan)) {
        return base::Error{5, QStringLiteral("Bilinmeyen alan: ") + alan, where};
    }
    store::Query q(db, QStringLiteral("SELECT DISTINCT %1 FROM Ogrenci ORDER BY %1").arg(alan));
    if (!q.exec()) {
        return q.error(where);
    }
    // Null and "" are one empty value, which the engines order differently: it goes first.
    QStringList values;
    bool empty = false;
    while (q.next()) {
        const QString v = q.text(0);
        if (v.isEmpty()) {
            empty = true;
        } else if (values.isEmpty() || values.constLast() != v) {
            values << v;
        }
    }
    if (empty && bosDahil) {
        values.prepend(QStringLiteral(""));
    }
    return values;
}

// ---- writing -------------------------------------------------------------------------------

namespace {

// A field of Ogrenci as it is written: the card number already encrypted, the rest as they are
// kept.
QVariant ogrenciDegeri(const QString &field, const QVariant &value, const QString &kartNoGizli)
{
    if (field == KartNoAlani)
        return kartNoGizli;
    return toStored(OgrenciTablo, field, value, false);
}

} // namespace

base::Result<KaydetSonucu> OgrenciKaydet(store::Database &db, const OgrenciKaydi &k,
                                         bool borclariKapat)
{
    const QString where = label("OgrenciKaydet");
    const users::CalismaDurumu &durum = users::durum();
    const QString donem = stored(durum.OgretimYili, 10);
    const QStringList fields = OgrenciAlanlari();
    // The card number is boxed before the save's transaction: the office's key may have to be
    // made first, in a write of its own.
    const QString kartNo = k.metin(KartNoAlani).trimmed();
    const base::Result<QString> kartNoGizli
        = users::GizliYaz(db, users::GizliMi(kartNo) ? kartNo : kartNo.left(KartNoUzunlugu));
    if (!kartNoGizli) {
        return kartNoGizli.error().withLabel(where);
    }

    store::Transaction tx(db);
    if (!tx) {
        return tx.error().withLabel(where);
    }
    KaydetSonucu result;
    result.kayitId = k.kayitId;
    if (k.kayitId != 0) {
        store::Query update(db, QStringLiteral("UPDATE Ogrenci SET %1, Donem = ? WHERE KayitID = ?")
                                    .arg(assignments(fields).join(QStringLiteral(", "))));
        for (const QString &f : fields) {
            bindValue(update, ogrenciDegeri(f, k.ogrenci.value(f), *kartNoGizli));
        }
        update.bind(donem).bind(k.kayitId);
        if (!update.exec()) {
            return update.error(where);
        }
        result.yeni = update.rowsAffected() == 0;
    } else {
        result.yeni = true;
    }
    if (result.yeni) {
        store::Query insert(db,
                            QStringLiteral("INSERT INTO Ogrenci (%1, Donem, "
                                           "Ogr_Islem_Yapan_Kullanici_Ilk, "
                                           "Ogr_Islem_Yapan_Kullanici) VALUES (%2, ?, ?, ?) "
                                           "RETURNING KayitID")
                                .arg(fields.join(QStringLiteral(", ")),
                                     placeholders(int(fields.size())).join(QStringLiteral(", "))));
        for (const QString &f : fields) {
            bindValue(insert, ogrenciDegeri(f, k.ogrenci.value(f), *kartNoGizli));
        }
        insert.bind(donem).bind(stored(durum.AktifKullanici, 20)).bind(QStringLiteral(""));
        if (!insert.exec() || !insert.next()) {
            return insert.error(where);
        }
        result.kayitId = insert.integer(0);
        insert.finish();
        const store::OgrenciLogSatiri log{result.kayitId,      donem,
                                          k.numara(),          stored(k.soyadi(), 20),
                                          stored(k.adi(), 20), stored(k.sinif(), 6)};
        if (base::Status s = store::LogOgrenci(db, log, store::LogYeniKayit, durum.AktifKullanici);
            !s) {
            return s.error().withLabel(where);
        }
    }
    if (base::Status s = writeParts(db, result.kayitId, k, donem, where); !s) {
        return s.error();
    }
    if (borclariKapat && k.ayrildi() && k.ayrilmaTarihi().isValid()) {
        if (base::Status s = deleteAccounts(db, result.kayitId, false, where); !s) {
            return s.error();
        }
    }
    if (!tx.commit()) {
        return tx.error().withLabel(where);
    }
    return result;
}

base::Result<qint64> OgrenciSil(store::Database &db, qint64 kayitId, qint64 numara,
                                const QString &adi, const QString &soyadi)
{
    const QString where = label("OgrenciSil");
    store::Transaction tx(db);
    if (!tx) {
        return tx.error().withLabel(where);
    }
    // The shown student, when the triple is his; otherwise the first with the triple.
    store::Query find(db, QStringLiteral("SELECT KayitID FROM Ogrenci WHERE Ogr_Numarasi = ? AND "
                                         "Ogr_Adi = ? AND Ogr_Soyadi = ? ORDER BY "
                                         "CASE WHEN KayitID = ? THEN 0 ELSE 1 END, KayitID "
                                         "LIMIT 1"));
    find.bind(numara).bind(stored(adi, 20)).bind(stored(soyadi, 20)).bind(kayitId);
    base::Result<std::optional<qint64>> found = firstKey(find, where);
    if (!found) {
        return found.error();
    }
    if (!found->has_value()) {
        return qint64(0);
    }
    const qint64 key = **found;
    find.finish();
    {
        store::Query q(db, QStringLiteral("DELETE FROM OgrenciNufus WHERE KayitID = ?"));
        q.bind(key);
        if (!q.exec()) {
            return q.error(where);
        }
    }
    if (base::Status s = deleteAccounts(db, key, true, where); !s) {
        return s.error();
    }
    {
        store::Query q(db, QStringLiteral("DELETE FROM Ogrenci WHERE KayitID = ?"));
        q.bind(key);
        if (!q.exec()) {
            return q.error(where);
        }
    }
    {
        store::Query q(db, QStringLiteral("DELETE FROM OgrenciFotograf WHERE Calisma = ? AND "
                                          "KayitID = ?"));
        q.bind(FotografCalisma(db)).bind(key);
        if (!q.exec()) {
            return q.error(where);
        }
    }
    if (!tx.commit()) {
        return tx.error().withLabel(where);
    }
    return key;
}

base::Result<int> OgrenciBilgiDegistir(store::Database &db, qint64 kayitId, const Kimlik &eski,
                                       const Kimlik &yeni)
{
    const QString where = label("OgrenciBilgiDegistir");
    store::Transaction tx(db);
    if (!tx) {
        return tx.error().withLabel(where);
    }
    store::Query q(db,
                   QStringLiteral("UPDATE Ogrenci SET Ogr_Numarasi = ?, Ogr_Adi = ?, "
                                  "Ogr_Soyadi = ?, Ogr_Sinif = ? WHERE KayitID = ? AND "
                                  "Ogr_Numarasi = ? AND COALESCE(Ogr_Adi, '') = ? AND "
                                  "COALESCE(Ogr_Soyadi, '') = ? AND COALESCE(Ogr_Sinif, '') = ?"));
    q.bind(yeni.numara)
        .bind(stored(yeni.adi, 20))
        .bind(stored(yeni.soyadi, 20))
        .bind(stored(yeni.sinif, 6))
        .bind(kayitId)
        .bind(eski.numara)
        .bind(stored(eski.adi, 20))
        .bind(stored(eski.soyadi, 20))
        .bind(stored(eski.sinif, 6));
    if (!q.exec()) {
        return q.error(where);
    }
    const int changed = q.rowsAffected();
    if (!tx.commit()) {
        return tx.error().withLabel(where);
    }
    return changed;
}

// ---- moving through the students ---------------------------------------------------------------

base::Result<std::optional<qint64>> OgrenciAra(store::Database &db, AramaAnahtari anahtar, Yon yon,
                                               const Kimlik &ekran, qint64 kayitId)
{
    // Labelled as the deletion is: the office's error lists have always shown it so.
    const QString where = label("OgrenciSil");
    QString sql = QStringLiteral("SELECT KayitID FROM Ogrenci");
    QVariantList values;
    if (anahtar == AramaAnahtari::Sinif) {
        const QString sinif = stored(ekran.sinif, 6);
        switch (yon) {
        case Yon::Ilk:
            sql += QStringLiteral(" WHERE Ogr_Sinif >= ? ORDER BY Ogr_Sinif ASC, Ogr_Numarasi ASC, "
                                  "KayitID ASC");
            values << sinif;
            break;
        case Yon::Onceki:
            sql += QStringLiteral(" WHERE Ogr_Sinif = ? AND (Ogr_Numarasi < ? OR (Ogr_Numarasi = ? "
                                  "AND KayitID < ?)) ORDER BY Ogr_Numarasi DESC, KayitID DESC");
            values << sinif << ekran.numara << ekran.numara << kayitId;
            break;
        case Yon::Sonraki:
            sql += QStringLiteral(" WHERE Ogr_Sinif = ? AND (Ogr_Numarasi > ? OR (Ogr_Numarasi = ? "
                                  "AND KayitID > ?)) ORDER BY Ogr_Numarasi ASC, KayitID ASC");
            values << sinif << ekran.numara << ekran.numara << kayitId;
            break;
        case Yon::Son:
            sql += QStringLiteral(
                " WHERE Ogr_Sinif >= ? ORDER BY Ogr_Sinif ASC, Ogr_Numarasi DESC, "
                "KayitID DESC");
            values << sinif;
            break;
        }
    } else {
        QString key;
        QVariant value;
        switch (anahtar) {
        case AramaAnahtari::Numara:
            key = QStringLiteral("Ogr_Numarasi");
            value = ekran.numara;
            break;
        case AramaAnahtari::Ad:
            key = QStringLiteral("Ogr_Adi");
            value = stored(ekran.adi, 20);
            break;
        default:
            key = QStringLiteral("Ogr_Soyadi");
            value = stored(ekran.soyadi, 20);
            break;
        }
        switch (yon) {
        case Yon::Ilk:
            sql += QStringLiteral(" WHERE %1 IS NOT NULL ORDER BY %1 ASC, KayitID ASC").arg(key);
            break;
        case Yon::Onceki:
            sql += QStringLiteral(" WHERE %1 < ? OR (%1 = ? AND KayitID < ?) "
                                  "ORDER BY %1 DESC, KayitID DESC")
                       .arg(key);
            values << value << value << kayitId;
            break;
        case Yon::Sonraki:
            sql += QStringLiteral(" WHERE %1 > ? OR (%1 = ? AND KayitID > ?) "
                                  "ORDER BY %1 ASC, KayitID ASC")
                       .arg(key);
            values << value << value << kayitId;
            break;
        case Yon::Son:
            sql += QStringLiteral(" WHERE %1 IS NOT NULL ORDER BY %1 DESC, KayitID DESC").arg(key);
            break;
        }
    }
    sql += QStringLiteral(" LIMIT 1");
    store::Query q(db, sql);
    for (const QVariant &v : values) {
        q.bind(v);
    }
    return firstKey(q, where);
}

// ---- the totals of the fee accounts ---------------------------------------------------------

base::Result<GenelDurumSonucu> GenelDurum(store::Database &db, qint64 kayitId)
{
    const base::Result<QList<fees::HesapToplami>> rows
        = fees::HesapToplamlari(db, kayitId, QDate(), label("OgrenciGoster"));
    if (!rows) {
        return rows.error();
    }
    GenelDurumSonucu r;
    for (const fees::HesapToplami &a : *rows) {
        r.toplamBorc += a.odenecek;
        r.toplamOdenen += a.odenen;
    }
    r.kalan = r.toplamBorc - r.toplamOdenen;
    return r;
}

QDate BuAySonu(const QString &cariAy)
{
    const QString t = cariAy.trimmed();
    bool yearOk = false;
    bool monthOk = false;
    const int year = t.left(4).toInt(&yearOk);
    const int month = t.right(2).toInt(&monthOk);
    QDate first(year, month, 1);
    if (t.size() < 6 || !yearOk || !monthOk || !first.isValid()) {
        const QDate today = QDate::currentDate();
        first = QDate(today.year(), today.month(), 1);
    }
    return base::AyEkle(first, 1);
}

base::Result<BuAySonucu> BuAyYapilacakOdemeler(store::Database &db, qint64 kayitId,
                                               const QString &cariAy)
{
    const base::Result<QList<fees::HesapToplami>> rows = fees::HesapToplamlari(
        db, kayitId, BuAySonu(cariAy), QStringLiteral("FrmOgrenci:BuAyYapilacakOdemeler"));
    if (!rows) {
        return rows.error();
    }
    BuAySonucu r;
    for (const fees::HesapToplami &a : *rows) {
        BuAySatiri s{a.aidatTanim, std::nullopt};
        if (a.odenecek > a.odenen) {
            s.tutar = a.odenecek - a.odenen;
            r.toplam += *s.tutar;
        }
        r.satirlar.append(s);
    }
    return r;
}

// ---- the photograph ----------------------------------------------------------------------------

QString FotografCalisma(store::Database &db)
{
    return QStringLiteral("Aidat%1").arg(db.openYear(), 3, 10, QLatin1Char('0'));
}

QByteArray FotografHazirla(const QString &dosya)
{
    QImageReader reader(dosya);
    reader.setAutoTransform(true);
    QImage image = reader.read();
    if (image.isNull()) {
        return QByteArray();
    }
    if (image.width() > 600 || image.height() > 800) {
        image = image.scaled(600, 800, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    }
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    if (!image.convertToFormat(QImage::Format_RGB32).save(&buffer, "JPG", 90)) {
        return QByteArray();
    }
    return bytes;
}

} // namespace students
