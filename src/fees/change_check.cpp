#include "fees/change_check.h"

#include "fees/store_steps.h"
#include "shell/para.h"
#include "shell/school.h"
#include "shell/settings.h"
#include "store/database.h"
#include "ui/message.h"

namespace fees {

namespace {

const QString s_baslik = QStringLiteral("Aidat Değişikliği");

struct HesapSatiri
{
    shell::Para borc;
    shell::Para kalan;
    QString aidatTanim;
    qint64 aidatId = 0;
};

shell::Result<std::optional<HesapSatiri>> ilkHesap(store::Database &db, qint64 aidatId,
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

shell::Result<bool> AidatDegisiklikKontrol(store::Database &db, qint64 aidatId, qint64 ogrKayitId)
{
    const QString label = QStringLiteral("Modul:AidatDegisiklikKontrol");
    if (shell::Status s = store::ensureOpen(db, store::Store::Year, label); !s) {
        return s.error();
    }
    store::Query sabit(db,
                       QStringLiteral("SELECT OgrAOtoDeg FROM Sabit ") + shell::SabitSirasi);
    if (!sabit.exec()) {
        return sabit.error(label);
    }
    if (!sabit.next()) {
        ui::notify(s_baslik, QStringLiteral("Okul kaydı bulunamadı."), ui::Icon::Warning);
        return false;
    }
    const bool otomatikDegissin = sabit.text(0) == QLatin1String("1");
    sabit.finish();

    if (ogrKayitId < 1) {
        ui::notify(QStringLiteral("Öğrenci Hata"), QStringLiteral("Lütfen öğrenci seçiniz."),
                   ui::Icon::Warning);
        return false;
    }

    shell::Result<std::optional<HesapSatiri>> hesap = ilkHesap(db, aidatId, ogrKayitId, label);
    if (!hesap) {
        return hesap.error();
    }
    const std::optional<HesapSatiri> &h = *hesap;
    const bool harcanmisYerTutucu = h && h->borc > shell::Para() && h->kalan <= shell::Para()
                                    && h->aidatTanim == QStringLiteral("Aidat Tanımı")
                                    && h->aidatId == 0;
    // The repair is a write: a user who may only read goes on with the rows as they stand.
    if (harcanmisYerTutucu && shell::durum().HakYazma) {
        store::Query onar(db,
                          QStringLiteral("UPDATE OgrenciAidatTanim SET Borc = 0, Kalan = 0 "
                                         "WHERE Kalan <= 0 AND AidatTanim = ? AND OgrKayitID = ? "
                                         "AND AidatID = ?"));
        onar.bind(QStringLiteral("Aidat Tanımı")).bind(ogrKayitId).bind(aidatId);
        if (!onar.exec()) {
            return onar.error(label);
        }
        hesap = ilkHesap(db, aidatId, ogrKayitId, label);
        if (!hesap) {
            return hesap.error();
        }
    }
    if (!hesap->has_value()) {
        return true;
    }
    const HesapSatiri &satir = **hesap;
    if (satir.borc != satir.kalan) {
        ui::notify(s_baslik, QStringLiteral("Bu aidatta ödeme yapılmış. Değişiklik yapılamaz."),
                   ui::Icon::Warning);
        return false;
    }
    if (otomatikDegissin) {
        return true;
    }
    ui::notify(s_baslik,
               QStringLiteral("Sabit Bilgiler >> Okul Bilgileri ekranındaki seçeneği kontrol "
                              "ediniz."),
               ui::Icon::Warning);
    return false;
}

} // namespace fees
