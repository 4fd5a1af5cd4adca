#include "fees/account.h"

#include "base/turkish_text.h"
#include "fees/account_rules.h"
#include "fees/store_steps.h"
#include "store/change_log.h"
#include "store/database.h"
#include "users/rights.h"

#include <QHash>

#include <algorithm>

namespace fees {

namespace {

const QString ReadLabel = QStringLiteral("FrmOgrenciAidat:OgrenciAidatTanimGoster");
const QString DetailLabel = QStringLiteral("FrmOgrenciAidat:OgrenciAidatDetayGoster");
const QString PaidLabel = QStringLiteral("FrmOgrenciAidat:OgrenciOdenenGoster");
const QString SaveLabel = QStringLiteral("FrmOgrenciAidat:OgrenciAidatKaydet");
const QString DeleteLabel = QStringLiteral("FrmOgrenciAidat:AidatSil");

// The money column of a sum: PostgreSQL sums a BIGINT to a NUMERIC.
QString sumOf(const QString &column)
{
    return QStringLiteral("CAST(SUM(%1) AS BIGINT)").arg(column);
}

std::optional<Para> optionalPara(const store::Query &q, int column)
{
    if (q.value(column).isNull()) {
        return std::nullopt;
    }
    return q.para(column);
}

bool isCalendarDate(const QDateTime &t)
{
    return t.isValid() && !base::SifirTarihMi(t);
}

base::Error changedElsewhere()
{
    return base::Error::refusal(QStringLiteral("Dikkat"),
                                QStringLiteral("Bu aidat hesabı siz çalışırken başka bir yerde "
                                               "değiştirildi. Hesap yeniden okunacak; "
                                               "değişikliklerinizi yeniden giriniz."),
                                base::Icon::Warning);
}

} // namespace

int YeniSira(const QList<DetaySatiri> &taksitler)
{
    int highest = 0;
    for (const DetaySatiri &t : taksitler) {
        highest = std::max(highest, t.sira);
    }
    return highest + 1;
}

int YeniSira(const QList<OdemeSatiri> &odemeler)
{
    int highest = 0;
    for (const OdemeSatiri &o : odemeler) {
        highest = std::max(highest, o.sira);
    }
    return highest + 1;
}

bool Yazilir(const DetaySatiri &taksit)
{
    return !taksit.elle || isCalendarDate(taksit.odemeTarihi);
}

bool Yazilir(const OdemeSatiri &odeme)
{
    return !odeme.elle || (isCalendarDate(odeme.odemeTarihi) && odeme.odenen > Para());
}

// ---- reading ---------------------------------------------------------------------------------

base::Result<QList<HesapSatiri>> OgrenciAidatTanimGoster(store::Database &db, qint64 ogrKayitId)
{
    store::Query q(db, QStringLiteral("SELECT KayitID, OgrKayitID, AidatID, AidatTanim, Sira, "
                                      "Borc, Kalan, IskontoTutari, YTLCevrim, Surum "
                                      "FROM OgrenciAidatTanim WHERE OgrKayitID = ? "
                                      "ORDER BY Sira, KayitID"));
    q.bind(ogrKayitId);
    if (!q.exec()) {
        return q.error(ReadLabel);
    }
    QList<HesapSatiri> hesaplar;
    while (q.next()) {
        hesaplar.append(HesapSatiri{q.integer(0), q.integer(1), q.integer(2), q.text(3),
                                    int(q.integer(4)), q.para(5), q.para(6), q.para(7),
                                    int(q.integer(8)), q.integer(9)});
    }
    return hesaplar;
}

base::Result<HesapKaydi> HesapOku(store::Database &db, qint64 kayitId, bool taksitFatura)
{
    HesapKaydi h;
    {
        store::Query q(db, QStringLiteral("SELECT KayitID, OgrKayitID, AidatID, AidatTanim, Sira, "
                                          "Borc, Kalan, IskontoTutari, YTLCevrim, Surum "
                                          "FROM OgrenciAidatTanim WHERE KayitID = ?"));
        q.bind(kayitId);
        if (!q.exec()) {
            return q.error(ReadLabel);
        }
        if (!q.next()) {
            return base::Error::refusal(QStringLiteral("Dikkat"),
                                        QStringLiteral("Aidat hesabı bulunamadı; başka bir yerde "
                                                       "silinmiş olabilir."),
                                        base::Icon::Warning);
        }
        h.satir = HesapSatiri{q.integer(0),      q.integer(1), q.integer(2), q.text(3),
                              int(q.integer(4)), q.para(5),    q.para(6),    q.para(7),
                              int(q.integer(8)), q.integer(9)};
    }
    {
        // Rows without a date first, on both engines, as they always came.
        store::Query q(db, QStringLiteral("SELECT PesinatTaksitID, Sira, OdemeTarihi, Odenecek, "
                                          "OdemeSekli, Fatura_ID, YTLCevrim "
                                          "FROM OgrenciAidatDetay WHERE KayitID = ? "
                                          "ORDER BY PesinatTaksitID DESC, "
                                          "CASE WHEN OdemeTarihi IS NULL THEN 0 ELSE 1 END, "
                                          "OdemeTarihi, Sira"));
        q.bind(kayitId);
        if (!q.exec()) {
            return q.error(DetailLabel);
        }
        bool pesinatOkundu = false;
        while (q.next()) {
            if (q.integer(0) == 1 && !pesinatOkundu) {
                pesinatOkundu = true;
                h.pesinat = q.para(3);
                h.pesinatKayitTarihi = q.dateTime(2);
                continue;
            }
            h.taksitler.append(DetaySatiri{int(q.integer(1)), q.dateTime(2), q.para(3), q.text(4),
                                           q.integer(5), int(q.integer(6))});
        }
    }
    {
        store::Query q(db, QStringLiteral("SELECT PesinatTaksitID, Sira, OdemeTarihi, Odenen, "
                                          "OdemeSekli, Ogr_Cari_Durum_Aciklamasi, FisNo, "
                                          "Fatura_ID, BankaAdi, Tahsilat_Vade_Tarihi, Sube, Ciro, "
                                          "Kullanici, YTLCevrim, Pesinat_Tarihi "
                                          "FROM OgrenciAidatOdeme WHERE KayitID = ? "
                                          "ORDER BY PesinatTaksitID DESC, %1Sira, ID")
                               .arg(taksitFatura
                                        ? QString()
                                        : QStringLiteral("CASE WHEN OdemeTarihi IS NULL THEN 0 "
                                                         "ELSE 1 END, OdemeTarihi, ")));
        q.bind(kayitId);
        if (!q.exec()) {
            return q.error(PaidLabel);
        }
        while (q.next()) {
            if (q.integer(0) == 1 && !h.odenenPesinat) {
                h.odenenPesinat
                    = OdenenPesinat{q.para(3), q.dateTime(14).date(), int(q.integer(13))};
                continue;
            }
            OdemeSatiri o;
            o.sira = int(q.integer(1));
            o.odemeTarihi = q.dateTime(2);
            o.odenen = q.para(3);
            o.odemeSekli = q.text(4);
            o.aciklama = q.text(5);
            o.fisNo = q.integer(6);
            o.faturaNo = q.integer(7);
            o.bankaAdi = q.text(8);
            o.vadeTarihi = q.dateTime(9);
            o.sube = q.text(10);
            o.ciro = q.text(11);
            o.kullanici = q.text(12);
            o.ytlCevrim = int(q.integer(13));
            o.pesinatTarihi = q.dateTime(14);
            h.odemeler.append(o);
        }
    }
    {
        store::Query q(db, QStringLiteral("SELECT IskontoID, IskontoAdi, IskontoOrani, "
                                          "IskontoMiktari, IskontoMatrahi, IskontoTipi, "
                                          "IskontoKalanTutardan, IskontoSirasi "
                                          "FROM OgrenciIskonto WHERE KayitID = ? "
                                          "ORDER BY IskontoSirasi, IskontoID"));
        q.bind(kayitId);
        if (!q.exec()) {
            return q.error(ReadLabel);
        }
        while (q.next()) {
            const base::Result<Para> oran = q.decimal(2);
            if (!oran) {
                return oran.error().withLabel(ReadLabel);
            }
            h.iskontolar.append(IskontoSatiri{q.integer(0), q.text(1), *oran, q.para(3), q.para(4),
                                              int(q.integer(5)), int(q.integer(6)),
                                              int(q.integer(7))});
        }
    }
    return h;
}

// ---- totals ----------------------------------------------------------------------------------

Toplamlar ToplamlariYenile(const HesapKaydi &hesap)
{
    Toplamlar t;
    t.borc = hesap.pesinat;
    for (const DetaySatiri &d : hesap.taksitler) {
        if (Yazilir(d)) {
            t.borc = t.borc + d.odenecek;
        }
    }
    if (hesap.odenenPesinat && hesap.odenenPesinat->tutar > Para()) {
        t.odenen = hesap.odenenPesinat->tutar;
    }
    for (const OdemeSatiri &o : hesap.odemeler) {
        if (Yazilir(o)) {
            t.odenen = t.odenen + o.odenen;
        }
    }
    return t;
}

// ---- the month's position ----------------------------------------------------------------------

base::Result<CariDurum> CariDurumHesapla(store::Database &db, qint64 ogrKayitId,
                                         const QDate &ilkGun, const QString &paraFormati)
{
    const QDate sonGun = ilkGun.addMonths(1).addDays(-1);
    // Installments and payments on either side of the month, the down payments (Sira 0) left
    // out; this month's payments count only where an installment of the same Sira exists.
    store::Query q(
        db, QStringLiteral(
                "SELECT T.KayitID, T.AidatTanim, "
                "(SELECT %1 FROM OgrenciAidatDetay D WHERE D.KayitID = T.KayitID AND D.Sira > 0 "
                "AND D.OdemeTarihi < ?), "
                "(SELECT %2 FROM OgrenciAidatOdeme P WHERE P.KayitID = T.KayitID AND P.Sira > 0 "
                "AND P.OdemeTarihi < ?), "
                "(SELECT %1 FROM OgrenciAidatDetay D WHERE D.KayitID = T.KayitID AND D.Sira > 0 "
                "AND D.OdemeTarihi >= ? AND D.OdemeTarihi <= ?), "
                "(SELECT %2 FROM OgrenciAidatDetay D JOIN OgrenciAidatOdeme P "
                "ON P.KayitID = D.KayitID AND P.Sira = D.Sira WHERE D.KayitID = T.KayitID "
                "AND D.Sira > 0 AND P.OdemeTarihi >= ? AND P.OdemeTarihi <= ?) "
                "FROM Ogrenci O JOIN OgrenciAidatTanim T ON T.OgrKayitID = O.KayitID "
                "WHERE O.KayitID = ? ORDER BY T.Sira, T.KayitID")
                .arg(sumOf(QStringLiteral("D.Odenecek")), sumOf(QStringLiteral("P.Odenen"))));
    q.bind(ilkGun).bind(ilkGun).bind(ilkGun).bind(sonGun).bind(ilkGun).bind(sonGun).bind(
        ogrKayitId);
    if (!q.exec()) {
        return q.error(QStringLiteral("CariDurumHesapla"));
    }
    CariDurum cari;
    while (q.next()) {
        HesapCariDurumu h{q.integer(0), q.text(1), std::nullopt, std::nullopt};
        if (const std::optional<Para> oncekiBorc = optionalPara(q, 2)) {
            h.toplam = *oncekiBorc - optionalPara(q, 3).value_or(Para());
        }
        if (const std::optional<Para> cariBorc = optionalPara(q, 4)) {
            h.cariToplam = *cariBorc - optionalPara(q, 5).value_or(Para());
        }
        const Para toplam = h.toplam.value_or(Para());
        const Para cariToplam = h.cariToplam.value_or(Para());
        cari.buAykiBorc = cari.buAykiBorc + cariToplam;
        if (toplam > Para()) {
            cari.oncekiAylarBorc = cari.oncekiAylarBorc + toplam;
        }
        if (cariToplam + toplam > Para()) {
            cari.metin += QStringLiteral(" %1 : %2 TL.")
                              .arg(h.aidatTanim, base::Bicimle(cariToplam + toplam, paraFormati));
        }
        cari.hesaplar.append(h);
    }
    for (const Para p : {cari.buAykiBorc, cari.oncekiAylarBorc}) {
        if (p.overflowed()) {
            return base::TutarTasmasi(QStringLiteral("CariDurumHesapla"));
        }
    }
    return cari;
}

// ---- writing ---------------------------------------------------------------------------------

namespace {

base::Status writeHeader(store::Database &db, store::Transaction &tx, HesapKaydi &h,
                         const Toplamlar &t, const KayitBaglami &b)
{
    HesapSatiri &s = h.satir;
    const bool yeni = s.kayitId == 0;
    if (yeni) {
        store::Query insert(db, QStringLiteral("INSERT INTO OgrenciAidatTanim (OgrKayitID, Surum) "
                                               "VALUES (?, 0) RETURNING KayitID"));
        insert.bind(s.ogrKayitId);
        if (!insert.exec() || !insert.next()) {
            return rollBack(tx, insert, SaveLabel);
        }
        s.kayitId = insert.integer(0);
        s.surum = 0;
    }
    // The version read with the account must still stand: a bulk payment, another screen or
    // another workstation that wrote the account since has raised it.
    store::Query q(db, QStringLiteral("UPDATE OgrenciAidatTanim SET AidatTanim = ?, Borc = ?, "
                                      "Kalan = ?, OgrKayitID = ?, AidatID = ?, Sira = ?, "
                                      "YTLCevrim = ?, IskontoTutari = ?, Surum = ? "
                                      "WHERE KayitID = ? AND COALESCE(Surum, 0) = ?"));
    q.bind(s.aidatTanim.left(30))
        .bind(t.borc)
        .bind(t.kalan())
        .bind(s.ogrKayitId)
        .bind(s.aidatId)
        .bind(s.sira)
        .bind(b.paraTuru)
        .bind(s.iskontoTutari)
        .bind(s.surum + 1)
        .bind(s.kayitId)
        .bind(s.surum);
    if (!q.exec()) {
        return rollBack(tx, q, SaveLabel);
    }
    if (q.rowsAffected() != 1) {
        tx.rollback();
        return changedElsewhere().withLabel(SaveLabel);
    }
    const store::HesapLogSatiri log{s.ogrKayitId,    s.kayitId,  s.sira,
                                    t.borc,          t.kalan(),  s.aidatId,
                                    s.iskontoTutari, b.paraTuru, s.aidatTanim.left(30)};
    if (base::Status st = store::LogOgrenciAidatTanim(
            db, log, yeni ? store::LogYeniKayit : store::LogDegisiklik, b.kullanici);
        !st) {
        tx.rollback();
        return st.error().withLabel(SaveLabel);
    }
    return {};
}

base::Status writeInstallments(store::Database &db, store::Transaction &tx, const HesapKaydi &h,
                               const KayitBaglami &b)
{
    store::Query sil(db, QStringLiteral("DELETE FROM OgrenciAidatDetay WHERE KayitID = ?"));
    sil.bind(h.satir.kayitId);
    if (!sil.exec()) {
        return rollBack(tx, sil, SaveLabel);
    }
    store::Query ekle(db, QStringLiteral("INSERT INTO OgrenciAidatDetay (KayitID, Sira, "
                                         "PesinatTaksitID, OdemeTarihi, Odenecek, OdemeSekli, "
                                         "Fatura_ID, YTLCevrim) VALUES (?, ?, ?, ?, ?, ?, ?, ?)"));
    // The down-payment row stands on every saved account; it keeps the moment it was first
    // written, so that an unchanged account is written back unchanged.
    const QDateTime pesinatAni
        = h.pesinatKayitTarihi.isValid() ? h.pesinatKayitTarihi : QDateTime::currentDateTime();
    ekle.bind(h.satir.kayitId)
        .bind(0)
        .bind(1)
        .bind(
            QDateTime(pesinatAni.date(), QTime(pesinatAni.time().hour(), pesinatAni.time().minute(),
                                               pesinatAni.time().second())))
        .bind(h.pesinat)
        .bind(QString())
        .bind(qint64(0))
        .bind(b.paraTuru);
    if (!ekle.exec()) {
        return rollBack(tx, ekle, SaveLabel);
    }
    for (const DetaySatiri &d : h.taksitler) {
        if (!Yazilir(d)) {
            continue;
        }
        ekle.bind(h.satir.kayitId)
            .bind(d.sira)
            .bind(0)
            .bind(d.odemeTarihi)
            .bind(d.odenecek)
            .bind(d.odemeSekli.left(20))
            .bind(b.taksitFatura || !d.elle ? d.faturaNo : qint64(0))
            .bind(d.elle ? b.paraTuru : d.ytlCevrim);
        if (!ekle.exec()) {
            return rollBack(tx, ekle, SaveLabel);
        }
    }
    return {};
}

base::Status writePayments(store::Database &db, store::Transaction &tx, const HesapKaydi &h,
                           const KayitBaglami &b)
{
    const qint64 hesap = h.satir.kayitId;
    store::Query sil(db, QStringLiteral("DELETE FROM OgrenciAidatOdeme WHERE KayitID = ?"));
    sil.bind(hesap);
    if (!sil.exec()) {
        return rollBack(tx, sil, SaveLabel);
    }
    const auto log = [&](const store::OdemeLogSatiri &satir, const QString &islem) {
        base::Status st = store::LogOgrenciAidatOdeme(db, satir, islem, b.kullanici);
        if (!st) {
            tx.rollback();
            return base::Status(st.error().withLabel(SaveLabel));
        }
        return base::Status();
    };
    store::Query ekle(db,
                      QStringLiteral("INSERT INTO OgrenciAidatOdeme (KayitID, Sira, "
                                     "PesinatTaksitID, OdemeTarihi, Odenen, OdemeSekli, "
                                     "Ogr_Cari_Durum_Aciklamasi, FisNo, Fatura_ID, BankaAdi, "
                                     "Tahsilat_Vade_Tarihi, Sube, Ciro, Kullanici, YTLCevrim, "
                                     "Pesinat_Tarihi) "
                                     "VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)"));
    if (h.odenenPesinat && h.odenenPesinat->tutar > Para()) {
        const OdenenPesinat &p = *h.odenenPesinat;
        ekle.bind(hesap)
            .bind(0)
            .bind(1)
            .bind(base::SifirTarih)
            .bind(p.tutar)
            .bind(QString())
            .bind(QString())
            .bind(qint64(0))
            .bind(qint64(0))
            .bind(QString())
            .bind(base::SifirTarih)
            .bind(QString())
            .bind(QString())
            .bind(QString())
            .bind(b.paraTuru)
            .bind(p.tarih);
        if (!ekle.exec()) {
            return rollBack(tx, ekle, SaveLabel);
        }
        if (base::Status st = log({hesap, 0, base::SifirTarih, p.tutar, QString(), QString(), 1, 0},
                                  store::LogYeniKayit);
            !st) {
            return st;
        }
    }
    for (const OdemeSatiri &o : h.odemeler) {
        if (!Yazilir(o)) {
            continue;
        }
        ekle.bind(hesap)
            .bind(o.sira)
            .bind(0)
            .bind(o.odemeTarihi)
            .bind(o.odenen)
            .bind(o.odemeSekli.left(1))
            .bind(o.aciklama.left(50))
            .bind(o.fisNo)
            .bind(o.faturaNo)
            .bind(o.bankaAdi.left(30))
            .bind(o.vadeTarihi)
            .bind(o.sube.left(50))
            .bind(o.ciro.left(30))
            .bind(o.kullanici.left(50))
            .bind(o.elle ? b.paraTuru : o.ytlCevrim)
            .bind(o.pesinatTarihi);
        if (!ekle.exec()) {
            return rollBack(tx, ekle, SaveLabel);
        }
        if (base::Status st
            = log({hesap, o.sira, o.odemeTarihi, o.odenen, o.aciklama, o.odemeSekli, 0, o.fisNo},
                  store::LogYeniKayit);
            !st) {
            return st;
        }
    }
    for (const OdemeSatiri &o : h.silinenOdemeler) {
        if (base::Status st
            = log({hesap, o.sira, o.odemeTarihi, o.odenen, o.aciklama, o.odemeSekli, 0, o.fisNo},
                  store::LogKayitSil);
            !st) {
            return st;
        }
    }
    return {};
}

base::Status writeDiscounts(store::Database &db, store::Transaction &tx, const HesapKaydi &h)
{
    store::Query sil(db, QStringLiteral("DELETE FROM OgrenciIskonto WHERE KayitID = ?"));
    sil.bind(h.satir.kayitId);
    if (!sil.exec()) {
        return rollBack(tx, sil, SaveLabel);
    }
    store::Query ekle(db, QStringLiteral("INSERT INTO OgrenciIskonto (KayitID, IskontoID, "
                                         "IskontoAdi, IskontoOrani, IskontoMiktari, "
                                         "IskontoMatrahi, IskontoTipi, IskontoKalanTutardan, "
                                         "IskontoSirasi) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?)"));
    for (const IskontoSatiri &i : h.iskontolar) {
        ekle.bind(h.satir.kayitId)
            .bind(i.iskontoId)
            .bind(i.iskontoAdi.left(30))
            .bindDecimal(i.iskontoOrani)
            .bind(i.iskontoMiktari)
            .bind(i.iskontoMatrahi)
            .bind(i.iskontoTipi)
            .bind(i.iskontoKalanTutardan)
            .bind(i.iskontoSirasi);
        if (!ekle.exec()) {
            return rollBack(tx, ekle, SaveLabel);
        }
    }
    return {};
}

} // namespace

base::Result<HesapKayitSonucu> HesapKaydet(store::Database &db, HesapKaydi &hesap,
                                           const KayitBaglami &baglam)
{
    if (base::Status yetki = users::YazmaYetkisiVar(); !yetki) {
        return yetki.error();
    }
    if (hesap.satir.aidatTanim.trimmed().isEmpty()) {
        return HesapKayitSonucu{};
    }
    const Toplamlar toplam = ToplamlariYenile(hesap);
    for (const Para p : {toplam.borc, toplam.odenen, toplam.kalan()}) {
        if (p.overflowed()) {
            return base::TutarTasmasi(SaveLabel);
        }
    }
    const store::Operation op(db, store::Store::Year, SaveLabel);
    if (!op) {
        return op.error();
    }
    HesapKaydi yazilan = hesap;
    store::Transaction tx(db);
    if (!tx) {
        return relabeled(tx.error(), SaveLabel);
    }
    if (base::Status s = writeHeader(db, tx, yazilan, toplam, baglam); !s) {
        return s.error();
    }
    if (base::Status s = writeInstallments(db, tx, yazilan, baglam); !s) {
        return s.error();
    }
    HesapKayitSonucu sonuc;
    if (baglam.taksitFatura) {
        // What each invoice of the account holds, read inside the save.
        store::Query q(db, QStringLiteral("SELECT FaturaNo, %1 FROM Fatura WHERE KayitID = ? "
                                          "GROUP BY FaturaNo")
                               .arg(sumOf(QStringLiteral("OdenenTutar"))));
        q.bind(yazilan.satir.kayitId);
        if (!q.exec()) {
            return rollBack(tx, q, SaveLabel);
        }
        QHash<qint64, Para> faturaOdenen;
        while (q.next()) {
            faturaOdenen.insert(q.integer(0), q.para(1));
        }
        const FaturaDagilimi dagilim = FaturaEslestir(yazilan, faturaOdenen);
        for (qsizetype i = 0; i < yazilan.odemeler.size(); ++i) {
            yazilan.odemeler[i].faturaNo = dagilim.faturaNo.at(i);
        }
        sonuc.uyarilar = dagilim.uyarilar;
    }
    if (base::Status s = writePayments(db, tx, yazilan, baglam); !s) {
        return s.error();
    }
    if (base::Status s = writeDiscounts(db, tx, yazilan); !s) {
        return s.error();
    }
    if (!tx.commit()) {
        return relabeled(tx.error(), SaveLabel);
    }
    // Only a committed save changes the account the screen holds, and it holds what was
    // written: the rows typed on screen and the header carry the money scale of the save.
    hesap = yazilan;
    hesap.satir.ytlCevrim = baglam.paraTuru;
    if (hesap.odenenPesinat) {
        hesap.odenenPesinat->ytlCevrim = baglam.paraTuru;
    }
    for (DetaySatiri &d : hesap.taksitler) {
        if (d.elle) {
            d.ytlCevrim = baglam.paraTuru;
        }
    }
    for (OdemeSatiri &o : hesap.odemeler) {
        if (o.elle) {
            o.ytlCevrim = baglam.paraTuru;
        }
    }
    hesap.satir.borc = toplam.borc;
    hesap.satir.kalan = toplam.kalan();
    hesap.satir.surum += 1;
    hesap.silinenOdemeler.clear();
    return sonuc;
}

base::Status AidatSil(store::Database &db, const HesapSatiri &satir, const QString &kullanici)
{
    if (base::Status yetki = users::YazmaYetkisiVar(); !yetki) {
        return yetki;
    }
    const store::Operation op(db, store::Store::Year, DeleteLabel);
    if (!op) {
        return op.error();
    }
    store::Transaction tx(db);
    if (!tx) {
        return relabeled(tx.error(), DeleteLabel);
    }
    for (const QString &table :
         {QStringLiteral("OgrenciAidatTanim"), QStringLiteral("OgrenciAidatDetay"),
          QStringLiteral("OgrenciAidatOdeme"), QStringLiteral("Fatura"),
          QStringLiteral("OgrenciIskonto")}) {
        store::Query q(db, QStringLiteral("DELETE FROM %1 WHERE KayitID = ?").arg(table));
        q.bind(satir.kayitId);
        if (!q.exec()) {
            return rollBack(tx, q, DeleteLabel);
        }
    }
    const store::HesapLogSatiri log{satir.ogrKayitId,    satir.kayitId,   satir.sira,
                                    satir.borc,          satir.kalan,     satir.aidatId,
                                    satir.iskontoTutari, satir.ytlCevrim, satir.aidatTanim};
    if (base::Status s = store::LogOgrenciAidatTanim(db, log, store::LogKayitSil, kullanici); !s) {
        tx.rollback();
        return s.error().withLabel(DeleteLabel);
    }
    if (!tx.commit()) {
        return relabeled(tx.error(), DeleteLabel);
    }
    return {};
}

} // namespace fees
