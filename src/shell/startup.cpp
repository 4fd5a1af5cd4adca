#include "shell/startup.h"

#include "base/platform.h"
#include "shell/main_window.h"
#include "ui/failure.h"
#include "ui/message.h"
#include "users/session.h"

#include <QApplication>
#include <QDir>
#include <QFont>
#include <QLocalServer>
#include <QLocalSocket>
#include <QLockFile>
#include <QLoggingCategory>
#include <QStyleFactory>

#include <cstdio>

namespace shell {

Q_LOGGING_CATEGORY(lcStartup, "vortel.startup")

namespace {

// The running program of this user listens here; a second start tells it to come forward.
QString instanceName()
{
    return QStringLiteral("zerna-vortel-%1").arg(base::isletimSistemiKullanicisi());
}

bool tellTheRunningOne()
{
    QLocalSocket socket;
    socket.connectToServer(instanceName());
    if (!socket.waitForConnected(2000))
        return false;
    socket.write("one\n");
    socket.waitForBytesWritten(2000);
    socket.disconnectFromServer();
    return true;
}

// The window in front: a dialog waiting for an answer (the login) or the main window.
void bringForward(QWidget *main)
{
    QWidget *front = QApplication::activeModalWidget();
    if (!front)
        front = main;
    front->setWindowState((front->windowState() & ~Qt::WindowMinimized) | Qt::WindowActive);
    front->show();
    front->raise();
    front->activateWindow();
    qCInfo(lcStartup) << "brought forward by a second start";
}

} // namespace

KomutSatiri KomutSatiriOku(const QStringList &arguments)
{
    KomutSatiri k;
    k.settings = store::ConnectionSettings::sqlite(
        QDir::current().absoluteFilePath(QStringLiteral("data")));
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
                k.hata
                    = QStringLiteral("PostgreSQL bağlantı bilgisi okunamadı: \"%1\". Örnek: --pg "
                                     "\"host=sunucu dbname=okul user=muhasebe password=...\"")
                          .arg(arguments[i]);
                return k;
            }
            k.settings = *pg;
        } else {
            k.hata
                = QStringLiteral("Bilinmeyen seçenek: %1\nKullanım: zerna-vortel [--data klasör | "
                                 "--pg \"host=... dbname=... user=...\"]")
                      .arg(a);
            return k;
        }
    }
    return k;
}

int Main(int argc, char *argv[])
{
    // The command line is read before any window system is asked for, so that its actions run
    // on a machine without a display.
    QStringList arguments;
    for (int i = 0; i < argc; ++i)
        arguments << QString::fromLocal8Bit(argv[i]);
    const KomutSatiri k = KomutSatiriOku(arguments);
    if (k.surum) {
        std::printf("%s\n", qPrintable(MDIAidat::programBasligi()));
        return 0;
    }
    if (!k.hata.isEmpty()) {
        std::fprintf(stderr, "%s\n", qPrintable(k.hata));
        return 2;
    }

    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Zerna Vortel"));
    QApplication::setOrganizationName(QStringLiteral("Zerna"));
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPointSizeF(9.5);
    QApplication::setFont(font);

    // A second start by the same user on the same machine brings the running one forward and
    // ends without a word.
    QLockFile instance(QDir::temp().absoluteFilePath(instanceName() + QStringLiteral(".lock")));
    instance.setStaleLockTime(0);
    if (!instance.tryLock(0)) {
        tellTheRunningOne();
        return 0;
    }
    QLocalServer::removeServer(instanceName()); // left by a program that was killed
    QLocalServer server;
    server.setSocketOptions(QLocalServer::UserAccessOption);
    if (!server.listen(instanceName()))
        qCWarning(lcStartup) << "no instance server:" << server.errorString();

    users::durum().UygulamaYolu = QCoreApplication::applicationDirPath();
    store::Database db(k.settings);
    store::setDefaultDatabase(&db);
    store::setMessageHandler(
        [](store::MessageKind kind, const QString &title, const QString &text) {
            ui::notify(title, text,
                       kind == store::MessageKind::Critical  ? ui::Icon::Critical
                       : kind == store::MessageKind::Warning ? ui::Icon::Warning
                                                             : ui::Icon::Information);
        });
    ui::setProgramAdi(MDIAidat::programBasligi());

    int result = 0;
    {
        MDIAidat window(db);
        QObject::connect(&server, &QLocalServer::newConnection, &window, [&server, &window] {
            while (QLocalSocket *peer = server.nextPendingConnection()) {
                QObject::connect(peer, &QLocalSocket::disconnected, peer, &QObject::deleteLater);
                bringForward(&window);
            }
        });
        if (window.MDIForm_Load())
            result = QApplication::exec();
    }
    store::DatabaseKapat(db);
    store::setDefaultDatabase(nullptr);
    return result;
}

} // namespace shell
