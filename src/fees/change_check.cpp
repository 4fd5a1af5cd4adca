#include "fees/change_check.h"

#include "base/para.h"
#include "fees/ledger.h"
#include "store/database.h"
#include "store/settings.h"
#include "users/session.h"

namespace fees {

namespace {

const QString s_baslik = QStringLiteral("Aidat Değişikliği");

} // namespace

base::Status AidatDegisiklikKontrol(store::Database &db, qint64 aidatId, qint64 ogrKayitId)
{
    const QString label = QStringLiteral("Modul:AidatDegisiklikKontrol");
    const store::Operation op(db, store::Store::Year, label);
    if (!op) {
        return op.error();
    }
    store::Query sabit(db, QStringLiteral("SELECT OgrAOtoDeg FROM Sabit ") + store::SabitSirasi);
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

    base::Result<std::optional<Hesap>> hesap = OgrenciHesabi(db, ogrKayitId, aidatId, label);
    if (!hesap) {
        return hesap.error();
    }
    const std::optional<Hesap> &h = *hesap;
    const bool harcanmisYerTutucu = h && h->borc > base::Para() && h->kalan <= base::Para()
                                    && h->aidatTanim == YerTutucuHesapAdi && h->aidatId == 0;
    // The repair is a write: a user who may only read goes on with the rows as they stand.
    if (harcanmisYerTutucu && users::durum().HakYazma) {
        if (base::Result<int> onar = YerTutuculariSifirla(db, ogrKayitId, aidatId, label); !onar) {
            return onar.error();
        }
        hesap = OgrenciHesabi(db, ogrKayitId, aidatId, label);
        if (!hesap) {
            return hesap.error();
        }
    }
    if (!hesap->has_value()) {
        return {};
    }
    const Hesap &satir = **hesap;
    if (satir.borc != satir.kalan) {
        return base::Error::refusal(
            s_baslik, QStringLiteral("Bu aidatta ödeme yapılmış. Değişiklik yapılamaz."));
    }
    if (otomatikDegissin) {
        return {};
    }
    return base::Error::refusal(
        s_baslik,
        QStringLiteral("Sabit Bilgiler >> Okul Bilgileri ekranındaki seçeneği kontrol ediniz."));
}

} // namespace fees
