#include "shell/startup.h"

#include "ui/failure.h"
#include "shell/main_window.h"
#include "users/session.h"
#include "ui/message.h"

#include <QApplication>
#include <QDir>
#include <QFont>
#include <QLockFile>
#include <QStyleFactory>

#include <cstdio>

namespace shell {

KomutSatiri KomutSatiriOku(const QStringList &arguments)
{
    KomutSatiri k;
    k.settings = store::ConnectionSettings::sqlite(QDir::current().absoluteFilePath(QStringLiteral("data")));
    for (int i = 1; i < arguments.size(); ++i) {
        const QString a = arguments[i];
        if (a == QLatin1String("--surum") || a == QLatin1String("--version")) {
            k.surum = true;
        } else if (a == QLatin1String("--data") && i + 1 < arguments.size()) {
            k.settings = store::ConnectionSettings::sqlite(QDir(arguments[++i]).absolutePath());
        } else if (a == QLatin1String("--pg") && i + 1 < arguments.size()) {
            const std::optional<store::ConnectionSettings> pg
                = store::ConnectionSettings::fromConnInfo(arguments[++i]);
            if (!pg) {
                k.hata = QStringLiteral("PostgreSQL bağlantı bilgisi okunamadı: \"%1\". Örnek: --pg "
                                        "\"host=sunucu dbname=okul user=muhasebe password=...\"")
                             .arg(arguments[i]);
                return k;
            }
            k.settings = *pg;
        } else {
            k.hata = QStringLiteral("Bilinmeyen seçenek: %1\nKullanım: zerna-vortel [--data klasör | "
                                    "--pg \"host=... dbname=... user=...\"]")
                         .arg(a);
            return k;
        }
    }
    return k;
}

int Main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Zerna Vortel"));
    QApplication::setOrganizationName(QStringLiteral("Zerna"));
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPointSizeF(9.5);
    QApplication::setFont(font);

    const KomutSatiri k = KomutSatiriOku(QApplication::arguments());
    if (k.surum) {
        std::printf("%s\n", qPrintable(MDIAidat::programBasligi()));
        return 0;
    }
    if (!k.hata.isEmpty()) {
        std::fprintf(stderr, "%s\n", qPrintable(k.hata));
        return 2;
    }

    // A second start by the same user on the same machine ends at once, without a word.
    QString user = qEnvironmentVariable("USER");
    if (user.isEmpty())
        user = qEnvironmentVariable("USERNAME");
    QLockFile instance(QDir::temp().absoluteFilePath(QStringLiteral("zerna-vortel-%1.lock").arg(user)));
    instance.setStaleLockTime(0);
    if (!instance.tryLock(0))
        return 0;

    users::durum().UygulamaYolu = QCoreApplication::applicationDirPath();
    store::Database db(k.settings);
    store::setDefaultDatabase(&db);
    store::setMessageHandler([](store::MessageKind kind, const QString &title, const QString &text) {
        ui::notify(title, text,
                   kind == store::MessageKind::Critical  ? ui::Icon::Critical
                   : kind == store::MessageKind::Warning ? ui::Icon::Warning
                                                         : ui::Icon::Information);
    });
    ui::setProgramAdi(MDIAidat::programBasligi());

    int result = 0;
    {
        MDIAidat window(db);
        if (window.MDIForm_Load())
            result = QApplication::exec();
    }
    store::DatabaseKapat(db);
    store::setDefaultDatabase(nullptr);
    return result;
}

} // namespace shell
