#include "maintenance/school.h"

#include "base/turkish_text.h"
#include "store/database.h"
#include "store/schema.h"

#include "store/settings.h"
#include "users/session.h"
#include <QRegularExpression>

namespace maintenance {

namespace {

const QString s_label = QStringLiteral("FrmOkulBilgileri:OkulbilgisiGetir");

QString fieldList()
{
    QStringList fields = {QStringLiteral("OkulAdi"),
                          QStringLiteral("OkulIlAdi"),
                          QStringLiteral("OkulIlceAdi"),
                          QStringLiteral("SonSenetNo"),
                          QStringLiteral("SonFaturaNo"),
                          QStringLiteral("SonFisNo"),
                          QStringLiteral("Banka"),
                          QStringLiteral("ParaTuru"),
                          QStringLiteral("TaksitYuvarlama"),
                          QStringLiteral("ParaBirimi"),
                          QStringLiteral("OgretimYili"),
                          QStringLiteral("Telefon"),
                          QStringLiteral("DonemBasTarihi"),
                          QStringLiteral("DonemBitTarihi"),
                          QStringLiteral("CariAy"),
                          QStringLiteral("BaslangicAy"),
                          QStringLiteral("OgrAOtoDeg"),
                          QStringLiteral("TaksitKilitle"),
                          QStringLiteral("FisNoKilitle"),
                          QStringLiteral("TaksitFatura"),
                          QStringLiteral("OgrKayitSilinenRapordaGoster"),
                          QStringLiteral("ResmiListeBaslik"),
                          QStringLiteral("EgitimDestekTutari")};
    for (int i = 1; i <= 4; ++i)
        fields << QStringLiteral("EgitimDestekAy%1").arg(i);
    for (int i = 1; i <= 4; ++i)
        fields << QStringLiteral("EgitimDestekTaksit%1").arg(i);
    fields << QStringLiteral("MersisNo") << QStringLiteral("TicaretSicilNo")
           << QStringLiteral("VergiSicilNo") << QStringLiteral("VergiDairesiAdi")
           << QStringLiteral("Adres");
    return fields.join(QStringLiteral(", "));
}

// A text as the field keeps it: cut to the field's size.
QString cut(const QString &value, const char *field)
{
    const int size = store::schema::textSize(store::Store::Year, QStringLiteral("Sabit"),
                                             QString::fromLatin1(field));
    return size > 0 ? value.left(size) : value;
}

QDateTime dateOrZero(const store::Query &q, const QString &field)
{
    const QDateTime d = q.dateTime(field);
    return d.isValid() ? d : base::SifirTarih;
}

} // namespace

std::optional<int> OkulYiliBasi(const QString &metin)
{
    static const QRegularExpression s_okulYili(
        QStringLiteral("^\\s*(\\d{4})\\s*-\\s*(\\d{4})\\s*$"));
    const QRegularExpressionMatch m = s_okulYili.match(metin);
    if (!m.hasMatch() || m.captured(2).toInt() != m.captured(1).toInt() + 1)
        return std::nullopt;
    return m.captured(1).toInt();
}

OkulBilgisi YeniOkulBilgisi(const QDate &bugun, const QString &calismaAdi)
{
    OkulBilgisi o;
    const std::optional<int> calismaYili = OkulYiliBasi(calismaAdi);
    const int first
        = calismaYili ? *calismaYili : (bugun.month() >= 7 ? bugun.year() : bugun.year() - 1);
    // September to December belong to the school year's first year, the rest to its second.
    const int cariYil = !calismaYili ? bugun.year() : (bugun.month() >= 9 ? first : first + 1);
    o.OgretimYili = QStringLiteral("%1-%2").arg(first).arg(first + 1);
    o.BaslangicAy = QStringLiteral("%1%2").arg(first).arg(9, 2, 10, QLatin1Char('0'));
    o.CariAy = QStringLiteral("%1%2").arg(cariYil).arg(bugun.month(), 2, 10, QLatin1Char('0'));
    o.DonemBasTarihi = QDateTime(QDate(first, 9, 1), QTime(0, 0));
    o.DonemBitTarihi = QDateTime(QDate(first + 1, 6, 30), QTime(0, 0));
    return o;
}

base::Result<OkulBilgisi> OkulbilgisiGetir(store::Database &db)
{
    const store::Operation op(db, store::Store::Year, s_label);
    if (!op)
        return op.error();
    store::Query q(db,
                   QStringLiteral("SELECT %1 FROM Sabit ").arg(fieldList()) + store::SabitSirasi);
    if (!q.exec())
        return op.failed(q);
    OkulBilgisi o;
    if (!q.next())
        return o;
    o.kayitVar = true;
    o.yuklenenOgretimYili = q.text(QStringLiteral("OgretimYili"));
    o.OkulAdi = q.text(QStringLiteral("OkulAdi"));
    o.OkulIlAdi = q.text(QStringLiteral("OkulIlAdi"));
    o.OkulIlceAdi = q.text(QStringLiteral("OkulIlceAdi"));
    o.Telefon = q.text(QStringLiteral("Telefon"));
    o.Banka = q.text(QStringLiteral("Banka"));
    o.SonSenetNo = q.integer(QStringLiteral("SonSenetNo"));
    o.SonFaturaNo = q.integer(QStringLiteral("SonFaturaNo"));
    o.SonFisNo = q.integer(QStringLiteral("SonFisNo"));
    o.OgretimYili = o.yuklenenOgretimYili;
    o.BaslangicAy = q.text(QStringLiteral("BaslangicAy"));
    o.CariAy = q.text(QStringLiteral("CariAy"));
    o.TaksitYuvarlama = q.isNull(QStringLiteral("TaksitYuvarlama"))
                            ? base::Para::fromUnits(1000000)
                            : q.para(QStringLiteral("TaksitYuvarlama"));
    o.DonemBasTarihi = dateOrZero(q, QStringLiteral("DonemBasTarihi"));
    o.DonemBitTarihi = dateOrZero(q, QStringLiteral("DonemBitTarihi"));
    o.ParaTuru = int(q.integer(QStringLiteral("ParaTuru")));
    o.ParaBirimi = q.text(QStringLiteral("ParaBirimi"));
    o.OgrAOtoDeg = q.isNull(QStringLiteral("OgrAOtoDeg")) ? QStringLiteral("0")
                                                          : q.text(QStringLiteral("OgrAOtoDeg"));
    o.TaksitKilitle = int(q.integer(QStringLiteral("TaksitKilitle")));
    o.FisNoKilitle = q.text(QStringLiteral("FisNoKilitle"));
    o.TaksitFatura = q.isNull(QStringLiteral("TaksitFatura"))
                         ? QStringLiteral("0")
                         : q.text(QStringLiteral("TaksitFatura"));
    o.OgrKayitSilinenRapordaGoster = q.text(QStringLiteral("OgrKayitSilinenRapordaGoster"));
    o.ResmiListeBaslik = q.text(QStringLiteral("ResmiListeBaslik"));
    o.EgitimDestekTutari = q.para(QStringLiteral("EgitimDestekTutari"));
    for (int i = 0; i < 4; ++i) {
        o.EgitimDestekAy[i] = int(q.integer(QStringLiteral("EgitimDestekAy%1").arg(i + 1)));
        o.EgitimDestekTaksit[i] = q.para(QStringLiteral("EgitimDestekTaksit%1").arg(i + 1));
    }
    o.MersisNo = q.text(QStringLiteral("MersisNo"));
    o.TicaretSicilNo = q.text(QStringLiteral("TicaretSicilNo"));
    o.VergiSicilNo = q.text(QStringLiteral("VergiSicilNo"));
    o.VergiDairesiAdi = q.text(QStringLiteral("VergiDairesiAdi"));
    o.Adres = q.text(QStringLiteral("Adres"));
    return o;
}

base::Status OkulbilgisiKaydet(store::Database &db, const OkulBilgisi &o, const OfisAyarlari *ofis)
{
    const QString label = QStringLiteral("FrmOkulBilgileri:OkulbilgisiKaydet");
    const store::Operation op(db, store::Store::Year, label);
    if (!op)
        return op.error();
    store::Transaction tx(db);
    if (!tx)
        return tx.error();
    // The row has no key of its own: it is the one of the school year that was read.
    const QString key = o.kayitVar ? o.yuklenenOgretimYili : cut(o.OgretimYili, "OgretimYili");
    if (!o.kayitVar) {
        store::Query insert(db, QStringLiteral("INSERT INTO Sabit (OgretimYili) VALUES (?)"));
        insert.bind(key);
        if (!insert.exec())
            return op.failed(insert);
    }
    const QStringList fields = fieldList().split(QStringLiteral(", "));
    QStringList sets;
    for (const QString &f : fields)
        sets << f + QStringLiteral(" = ?");
    const QString where = key.isEmpty()
                              ? QStringLiteral("(OgretimYili IS NULL OR OgretimYili = '')")
                              : QStringLiteral("OgretimYili = ?");
    store::Query q(
        db,
        QStringLiteral("UPDATE Sabit SET %1 WHERE %2").arg(sets.join(QStringLiteral(", ")), where));
    q.bind(cut(o.OkulAdi, "OkulAdi"))
        .bind(cut(o.OkulIlAdi, "OkulIlAdi"))
        .bind(cut(o.OkulIlceAdi, "OkulIlceAdi"))
        .bind(o.SonSenetNo)
        .bind(o.SonFaturaNo)
        .bind(o.SonFisNo)
        .bind(cut(o.Banka, "Banka"))
        .bind(o.ParaTuru)
        .bind(o.TaksitYuvarlama)
        .bind(cut(o.ParaBirimi, "ParaBirimi"))
        .bind(cut(o.OgretimYili, "OgretimYili"))
        .bind(cut(o.Telefon, "Telefon"))
        .bind(o.DonemBasTarihi.isValid() ? o.DonemBasTarihi : base::SifirTarih)
        .bind(o.DonemBitTarihi.isValid() ? o.DonemBitTarihi : base::SifirTarih)
        .bind(cut(o.CariAy, "CariAy"))
        .bind(cut(o.BaslangicAy, "BaslangicAy"))
        .bind(cut(o.OgrAOtoDeg, "OgrAOtoDeg"))
        .bind(o.TaksitKilitle)
        .bind(cut(o.FisNoKilitle, "FisNoKilitle"))
        .bind(cut(o.TaksitFatura, "TaksitFatura"))
        .bind(cut(o.OgrKayitSilinenRapordaGoster, "OgrKayitSilinenRapordaGoster"))
        .bind(cut(o.ResmiListeBaslik, "ResmiListeBaslik"))
        .bind(o.EgitimDestekTutari);
    for (int i = 0; i < 4; ++i)
        q.bind(o.EgitimDestekAy[i]);
    for (int i = 0; i < 4; ++i)
        q.bind(o.EgitimDestekTaksit[i]);
    q.bind(cut(o.MersisNo, "MersisNo"))
        .bind(cut(o.TicaretSicilNo, "TicaretSicilNo"))
        .bind(cut(o.VergiSicilNo, "VergiSicilNo"))
        .bind(cut(o.VergiDairesiAdi, "VergiDairesiAdi"))
        .bind(cut(o.Adres, "Adres"));
    if (!key.isEmpty())
        q.bind(key);
    if (!q.exec())
        return op.failed(q);
    q.finish();
    if (ofis) {
        if (base::Status s = OfisAyarlariYaz(db, *ofis); !s)
            return s.error().withLabel(label);
    }
    if (!tx.commit())
        return tx.error();
    return {};
}

base::Status OkulbilgisiSil(store::Database &db)
{
    const QString label = QStringLiteral("FrmOkulBilgileri:OkulbilgisiSil");
    store::Query q(db, QStringLiteral("DELETE FROM Sabit"));
    if (!q.exec())
        return q.error(label);
    return {};
}

bool SabitBilgileriOku(store::Database &db)
{
    users::CalismaDurumu &d = users::durum();
    d.OgretimYili.clear();
    d.OkulAdi.clear();
    d.OkulIlAdi.clear();
    d.OkulIlceAdi.clear();
    d.ResmiListeBaslik.clear();
    d.Banka.clear();
    d.SonFaturaNo = d.SonSenetNo = d.SonFisNo = 0;
    d.CariAy.clear();
    d.BaslangicAy.clear();
    d.TaksitYuvarlama = base::Para::fromUnits(1000000);
    d.DonemBasTarihi = base::SifirTarih;
    d.DonemBitTarihi = base::SifirTarih;
    d.ParaFormati = base::ParaFormatiTam;
    d.OgrAOtoDeg = QStringLiteral("0");
    d.TaksitFatura = QStringLiteral("0");
    d.TaksitKilitle = false;
    d.FisNoKilitle = false;
    d.OdemeSekilleri = users::OdemeSekilleriTablosu();

    bool read = false;
    if (base::Result<OkulBilgisi> o = OkulbilgisiGetir(db); o && o->kayitVar) {
        read = true;
        d.OgretimYili = o->OgretimYili;
        d.OkulAdi = o->OkulAdi;
        d.OkulIlAdi = o->OkulIlAdi;
        d.OkulIlceAdi = o->OkulIlceAdi;
        d.ResmiListeBaslik = o->ResmiListeBaslik;
        d.Banka = o->Banka;
        d.SonFaturaNo = o->SonFaturaNo;
        d.SonSenetNo = o->SonSenetNo;
        d.SonFisNo = o->SonFisNo;
        d.CariAy = o->CariAy;
        d.BaslangicAy = o->BaslangicAy;
        d.TaksitYuvarlama = o->TaksitYuvarlama;
        d.DonemBasTarihi = o->DonemBasTarihi;
        d.DonemBitTarihi = o->DonemBitTarihi;
        d.ParaTuru = o->ParaTuru;
        d.ParaBirimi = o->ParaBirimi;
        d.ParaFormati = o->ParaTuru != 0 ? base::ParaFormatiKurus : base::ParaFormatiTam;
        d.OgrAOtoDeg = o->OgrAOtoDeg.isEmpty() ? QStringLiteral("0") : o->OgrAOtoDeg;
        d.TaksitFatura = o->TaksitFatura.isEmpty() ? QStringLiteral("0") : o->TaksitFatura;
        d.TaksitKilitle = o->TaksitKilitle == 1;
        d.FisNoKilitle = o->FisNoKilitle == QLatin1String("1");
    }
    // The program has lived in the new currency since the six-zero conversion: whatever the row
    // says, amounts are YTL with two decimals.
    d.ParaTuru = 1;
    d.ParaBirimi = QStringLiteral("YTL");
    d.ParaFormati = base::ParaFormatiKurus;
    return read;
}

base::Status CariAyKaydet(store::Database &db, const QString &cariAy)
{
    // The working month is everyone's to choose.
    const store::WriteGuardExemption own;
    const store::Operation op(db, store::Store::Year,
                              QStringLiteral("MDIAidat:ActBar_ComboChange"));
    if (!op)
        return op.error();
    // The first row: the one in force.
    store::Query first(db, QStringLiteral("SELECT OgretimYili FROM Sabit ") + store::SabitSirasi);
    if (!first.exec())
        return op.failed(first);
    if (!first.next())
        return {};
    const QVariant year = first.value(0);
    first.finish();
    store::Query q(db, year.isNull()
                           ? QStringLiteral("UPDATE Sabit SET CariAy = ? WHERE OgretimYili IS NULL")
                           : QStringLiteral("UPDATE Sabit SET CariAy = ? WHERE OgretimYili = ?"));
    q.bind(cariAy);
    if (!year.isNull())
        q.bind(year.toString());
    if (!q.exec())
        return op.failed(q);
    return {};
}

OfisAyarlari OfisAyarlariOku(store::Database &db)
{
    auto get = [&db](const QString &file, const QString &key) {
        return store::INIAyar(db, QStringLiteral("GET"), file, QStringLiteral("OFIS"), key);
    };
    OfisAyarlari a;
    a.okKilit = get(QStringLiteral("okkilit.txt"), QStringLiteral("VAR")) == QLatin1String("1");
    a.fisKilit = get(QStringLiteral("fiskilit.txt"), QStringLiteral("VAR")) == QLatin1String("1");
    a.kasaAyarVar = get(QStringLiteral("okbilg.txt"), QStringLiteral("VAR")) == QLatin1String("1");
    if (a.kasaAyarVar) {
        a.kasaAktar = int(base::SayiDegeri(get(QStringLiteral("okbilg.txt"), QStringLiteral("1"))));
        const QString kod = get(QStringLiteral("okbilg.txt"), QStringLiteral("2"));
        a.kasaKod = kod.isEmpty() ? QStringLiteral("100") : kod;
        a.kasaSor = int(base::SayiDegeri(get(QStringLiteral("okbilg.txt"), QStringLiteral("3"))));
    }
    return a;
}

base::Status OfisAyarlariYaz(store::Database &db, const OfisAyarlari &a)
{
    const QString one = QStringLiteral("1");
    const QString zero = QStringLiteral("0");
    const struct
    {
        QString file;
        QString key;
        QString value;
    } entries[] = {
        {QStringLiteral("okkilit.txt"), QStringLiteral("VAR"), a.okKilit ? one : zero},
        {QStringLiteral("fiskilit.txt"), QStringLiteral("VAR"), a.fisKilit ? one : zero},
        {QStringLiteral("okbilg.txt"), QStringLiteral("VAR"), a.kasaAyarVar ? one : zero},
        {QStringLiteral("okbilg.txt"), one, QString::number(a.kasaAktar)},
        {QStringLiteral("okbilg.txt"), QStringLiteral("2"),
         a.kasaKod.trimmed().isEmpty() ? QStringLiteral("100") : a.kasaKod.trimmed()},
        {QStringLiteral("okbilg.txt"), QStringLiteral("3"), QString::number(a.kasaSor)},
    };
    store::Transaction tx(db);
    if (!tx)
        return tx.error();
    for (const auto &e : entries) {
        if (base::Status s = store::IniYaz(db, e.file, QStringLiteral("OFIS"), e.key, e.value); !s)
            return s;
    }
    if (!tx.commit())
        return tx.error();
    return {};
}

} // namespace maintenance
