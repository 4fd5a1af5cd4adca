#pragma once

#include "gui_support.h"
#include "office.h"
#include "test_support.h"

#include "shell/main_window.h"
#include "store/database.h"
#include "users/session.h"

#include <QApplication>
#include <QMdiArea>
#include <QMdiSubWindow>

#include <memory>

namespace testing {

// An office on SQLite (see openOffice) as the operator has it after the login: its store the
// default one, the main window up with every menu open, the messages recorded. Header only:
// a test that takes it links the shell.
struct OfficeWindow
{
    TestStore store{store::Engine::SQLite};
    MessageRecorder messages;
    std::unique_ptr<shell::MDIAidat> window;

    store::Database &db() { return store.db(); }
    shell::MDIAidat &w() { return *window; }

    // The office's rows, without the window yet: a test may add its own before start().
    bool prepare(const QString &user = QStringLiteral("Müdür"),
                 const QString &cariAy = QStringLiteral("202510"))
    {
        users::durum() = users::CalismaDurumu();
        store::setDefaultDatabase(&store.db());
        return openOffice(store.db(), user, QStringLiteral("1"), cariAy);
    }
    void start()
    {
        window = std::make_unique<shell::MDIAidat>(store.db());
        window->MenuDurumAyarla(true);
        window->show();
        QApplication::setActiveWindow(window.get());
    }
    // The screen a command opens, through the command table; null when none opened.
    template<typename T = QWidget>
    T *open(const QString &tool, const QString &screen)
    {
        window->ActBar_Click(tool);
        QMdiSubWindow *sub = window->screenWindow(screen);
        QApplication::setActiveWindow(window.get());
        return sub ? qobject_cast<T *>(sub->widget()) : nullptr;
    }
    ~OfficeWindow()
    {
        if (window) {
            window->mdiArea()->closeAllSubWindows();
            window->close();
        }
        window.reset();
        store::setDefaultDatabase(nullptr);
    }
};

} // namespace testing
