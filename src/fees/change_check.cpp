#include "fees/change_check.h"

#include "fees/store_steps.h"
#include "base/para.h"
#include "store/settings.h"
#include "store/settings.h"
#include "users/session.h"
#include "store/database.h"

namespace fees {

namespace {

const QString s_baslik = QStringLiteral("Aidat Değişikliği");

struct HesapSatiri
{
    base::Para borc;
    base::Para kalan;
    QString aidatTanim;
    qint64 aidatId = 0;
};

base::Result<std::optional<HesapSatiri>> ilkHesap(store::Database &db, qint64 aidatId,
                                                   qint64 ogrKayitId, const QString &label)
{
    store::Query q(db, QStringLiteral("SELECT KayitID, Borc, Kalan, AidatTanim, AidatID "
                                      "FROM OgrenciAidatTanim WHERE OgrKayitID = ? AND AidatID = ? "
                                      "ORDER BY KayitID"));
    q.bind(ogrKayitId).bind(aidatId);
    if (!q.exec()) {
        return q.error(label);
    }
    if (!q.next()) {
        return std::optional<HesapSatiri>();
    }
    return std::optional<HesapSatiri>(HesapSatiri{q.para(1), q.para(2), q.text(3), q.integer(4)});
}

} // namespace

base::Status AidatDegisiklikKontrol(store::Database &db, qint64 aidatId, qint64 ogrKayitId)
{
    const QString label = QStringLiteral("Modul:AidatDegisiklikKontrol");
    const store::Operation op(db, store::Store::Year, label);
    if (!op) {
        return op.error();
    }
    store::Query sabit(db,
                       QStringLiteral("SELECT OgrAOtoDeg FROM Sabit ") + store::SabitSirasi);
    if (!sabit.exec()) {
        return op.failed(sabit);
    }
    if (!sabit.next()) {
        return base::Error::refusal(s_baslik, QStringLiteral("Okul kaydı bulunamadı."));
    }
    const bool otomatikDegissin = sabit.text(0) == QLatin1String("1");
    sabit.finish();

    if (ogrKayitId < 1) {
        return base::Error::refusal(QStringLiteral("Öğrenci Hata"),
                                    QStringLiteral("Lütfen öğrenci seçiniz."));
    }

    base::Result<std::optional<HesapSatiri>> hesap = ilkHesap(db, aidatId, ogrKayitId, label);
    if (!hesap) {
        return hesap.error();
    }
    const std::optional<HesapSatiri> &h = *hesap;
    const bool harcanmisYerTutucu = h && h->borc > base::Para() && h->kalan <= base::Para()
                                    && h->aidatTanim == QStringLiteral("Aidat Tanımı")
                                    && h->aidatId == 0;
    // The repair is a write: a user who may only read goes on with the rows as they stand.
    if (harcanmisYerTutucu && users::durum().HakYazma) {
        store::Query onar(db,
                          QStringLiteral("UPDATE OgrenciAidatTanim SET Borc = 0, Kalan = 0 "
                                         "WHERE Kalan <= 0 AND AidatTanim = ? AND OgrKayitID = ? "
                                         "AND AidatID = ?"));
        onar.bind(QStringLiteral("Aidat Tanımı")).bind(ogrKayitId).bind(aidatId);
        if (!onar.exec()) {
            return op.failed(onar);
        }
        hesap = ilkHesap(db, aidatId, ogrKayitId, label);
        if (!hesap) {
            return hesap.error();
        }
    }
    if (!hesap->has_value()) {
        return {};
    }
    const HesapSatiri &satir = **hesap;
    if (satir.borc != satir.kalan) {
        return base::Error::refusal(s_baslik,
                                    QStringLiteral("Bu aidatta ödeme yapılmış. Değişiklik yapılamaz."));
    }
    if (otomatikDegissin) {
        return {};
    }
    return base::Error::refusal(
        s_baslik,
        QStringLiteral("Sabit Bilgiler >> Okul Bilgileri ekranındaki seçeneği kontrol ediniz."));
}

} // namespace fees
