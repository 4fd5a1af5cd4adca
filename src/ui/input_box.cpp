#include "ui/input_box.h"

#include <QApplication>
#include <QInputDialog>

namespace ui {

namespace {

InputHook &hook()
{
    static InputHook s_hook;
    return s_hook;
}

} // namespace

void setInputHook(InputHook h)
{
    hook() = std::move(h);
}

std::optional<QString> inputText(const QString &title, const QString &label, const QString &value,
                                 QWidget *parent)
{
    if (hook())
        return hook()(title, label);
    QInputDialog dialog(parent ? parent : QApplication::activeWindow());
    dialog.setWindowTitle(title);
    dialog.setLabelText(label);
    dialog.setTextValue(value);
    dialog.setOkButtonText(QStringLiteral("&Tamam"));
    dialog.setCancelButtonText(QStringLiteral("İ&ptal"));
    if (dialog.exec() != QDialog::Accepted)
        return std::nullopt;
    return dialog.textValue();
}

} // namespace ui
