// Times the program's start on a year of generated students:
//  - from the start (the application object made, the store opened) to the login window shown;
//  - from the login's "Tamam" to the main window with the year open (working-year screen
//    answered at once, migration check, school settings, dashboard over the whole ledger);
//  - the launch of the program binary itself (dynamic loading, Qt start, exit).
// Usage: bench_startup [students]  (offscreen unless QT_QPA_PLATFORM says otherwise)
#include "generate.h"

#include "maintenance/school.h"
#include "maintenance/working_years.h"
#include "shell/main_window.h"
#include "store/migration.h"
#include "ui/message.h"
#include "users/login.h"
#include "users/session.h"

#include <QAbstractButton>
#include <QApplication>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QProcess>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <vector>

namespace {

double median(std::vector<double> v)
{
    std::sort(v.begin(), v.end());
    return v[v.size() / 2];
}

// An office with one user and one year of `students` students, on disk.
bool prepare(const QString &folder, int students)
{
    store::Database db(store::ConnectionSettings::sqlite(folder));
    if (!users::KullaniciKaydet(db, QStringLiteral("muhasebe"), QStringLiteral("gizli")).ok())
        return false;
    const base::Result<int> id = maintenance::CalismaKaydet(db, QStringLiteral("2025-2026"));
    if (!id)
        return false;
    maintenance::CalismaSecimiYap(db, maintenance::Calisma{*id, QStringLiteral("2025-2026")}, 0);
    if (!store::DatabaseAc(db, store::Store::Year, true, true))
        return false;
    store::SonAlanlariEkle(db);
    maintenance::OkulBilgisi okul = maintenance::YeniOkulBilgisi(QDate(2025, 11, 1));
    okul.OkulAdi = QStringLiteral("Ölçüm Koleji");
    if (!maintenance::OkulbilgisiKaydet(db, okul).ok())
        return false;
    return bench::generate(db, students);
}

} // namespace

int main(int argc, char *argv[])
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    const int students = argc > 1 ? QString::fromLocal8Bit(argv[1]).toInt() : 10000;
    QTemporaryDir folder;
    const QString data = folder.path() + QStringLiteral("/data");
    std::printf("preparing %d students...\n", students);
    if (!prepare(data, students)) {
        std::printf("preparing failed\n");
        return 1;
    }
    ui::setMessageHook([](const ui::Message &m) {
        std::printf("message: %s\n", qPrintable(m.text));
        return ui::Answer::Ok;
    });

    std::vector<double> toLogin;
    std::vector<double> toMain;
    for (int round = 0; round < 7; ++round) {
        users::durum() = users::CalismaDurumu();
        store::Database db(store::ConnectionSettings::sqlite(data));
        store::setDefaultDatabase(&db);
        QElapsedTimer t;
        t.start();
        double loginShown = -1;
        QElapsedTimer afterLogin;
        // Answers the login as soon as it shows, and the working-year screen at once.
        QTimer poll;
        poll.setInterval(0);
        QObject::connect(&poll, &QTimer::timeout, [&] {
            QWidget *modal = QApplication::activeModalWidget();
            if (!modal || !modal->isVisible())
                return;
            if (modal->objectName() == QLatin1String("FrmSifre") && loginShown < 0) {
                loginShown = t.nsecsElapsed() / 1e6;
                modal->findChild<QLineEdit *>(QStringLiteral("txtKullaniciAdi"))
                    ->setText(QStringLiteral("muhasebe"));
                modal->findChild<QLineEdit *>(QStringLiteral("txtSifre"))
                    ->setText(QStringLiteral("gizli"));
                afterLogin.start();
                QTimer::singleShot(0, modal->findChild<QAbstractButton *>(QStringLiteral("CmdOk")),
                                   &QAbstractButton::click);
            } else if (modal->objectName() == QLatin1String("frmCalismaAc")) {
                QTimer::singleShot(0,
                                   modal->findChild<QAbstractButton *>(QStringLiteral("cmdTamam")),
                                   &QAbstractButton::click);
            }
        });
        poll.start();
        {
            shell::MDIAidat window(db);
            if (!window.MDIForm_Load()) {
                std::printf("start failed\n");
                return 1;
            }
            QCoreApplication::processEvents();
            toMain.push_back(afterLogin.nsecsElapsed() / 1e6);
            toLogin.push_back(loginShown);
            window.close();
        }
        store::setDefaultDatabase(nullptr);
    }
    std::printf("start to the login window          : %.1f ms (median of 7)\n", median(toLogin));
    std::printf("login to the main window, year open: %.1f ms (median of 7, %d students)\n",
                median(toMain), students);

    const QString program
        = QCoreApplication::applicationDirPath() + QStringLiteral("/../src/app/zerna-vortel");
    std::vector<double> launch;
    for (int i = 0; i < 5; ++i) {
        QElapsedTimer t;
        t.start();
        QProcess p;
        p.start(program, {QStringLiteral("--surum")});
        if (!p.waitForFinished(10000))
            break;
        launch.push_back(t.nsecsElapsed() / 1e6);
    }
    if (!launch.empty())
        std::printf("launching the program binary        : %.1f ms (median of 5)\n",
                    median(launch));
    return 0;
}
