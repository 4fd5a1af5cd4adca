#include "users/session.h"

namespace users {

CalismaDurumu &durum()
{
    static CalismaDurumu s_durum;
    return s_durum;
}

const QList<OdemeSekli> &OdemeSekilleriTablosu()
{
    static const QList<OdemeSekli> s_table = {
        {QString(), QString()},
        {QStringLiteral("K"), QStringLiteral("Kredi Kart")},
        {QStringLiteral("N"), QStringLiteral("Nakit")},
        {QStringLiteral("C"), QStringLiteral("Çek")},
        {QStringLiteral("S"), QStringLiteral("Senet")},
        {QStringLiteral("B"), QStringLiteral("Banka")},
        {QStringLiteral("L"), QStringLiteral("Bloke")},
        {QStringLiteral("D"), QStringLiteral("Diğer")},
        {QStringLiteral("T"), QStringLiteral("Kredi Kartı Taksit")},
        {QStringLiteral("M"), QStringLiteral("Mail Order")},
        {QStringLiteral("E"), QStringLiteral("Eğitim Destek")},
    };
    return s_table;
}

QString OdemeSekliAdi(const QString &kod)
{
    for (const OdemeSekli &s : OdemeSekilleriTablosu()) {
        if (s.kod == kod)
            return s.ad;
    }
    return QString();
}

} // namespace users
