#pragma once

#include <QString>

#include <functional>
#include <optional>

class QWidget;

namespace ui {

// A one-line question ("Çalışma Adını giriniz : "); nullopt when the operator cancels. Tests
// answer it through the hook, as they answer message boxes.
std::optional<QString> inputText(const QString &title, const QString &label,
                                 const QString &value = QString(), QWidget *parent = nullptr);
using InputHook = std::function<std::optional<QString>(const QString &title, const QString &label)>;
void setInputHook(InputHook hook);

} // namespace ui
