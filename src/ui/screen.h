#pragma once

#include <QWidget>

#include <initializer_list>

// A screen that lives as a child window of the main window. It keeps the form's name as its
// object name, tracks unsaved changes, and asks about them before it closes.
namespace ui {

class Screen : public QWidget
{
    Q_OBJECT

public:
    Screen(const QString &formName, const QString &title, QWidget *parent = nullptr);

    bool isDirty() const { return m_dirty; }
    void setDirty(bool dirty) { m_dirty = dirty; }
    // Every edit, tick and choice below `root` marks the screen as changed from now on.
    void watchForChanges(QWidget *root);

    // "Değişen Bilgileri Kaydetmek İstiyor Musunuz?": Yes saves (false when the save was
    // refused), No drops the changes, Cancel stays. True when the screen may go on.
    bool askToSaveChanges();
    // The screen's own wording of that question.
    void setChangeQuestion(const QString &title, const QString &text);
    // Closes the screen together with the child window of the main window that holds it.
    void closeWindow();

signals:
    void titleChanged(const QString &title);

protected:
    // The screen's own save; true when it was written.
    virtual bool save() { return true; }
    void closeEvent(QCloseEvent *event) override;
    // Escape that no box or list took for itself closes the screen, as its "Çıkış" does; an
    // Alt+letter of the screen's own presses its button, enters its box or opens its tab.
    void keyPressEvent(QKeyEvent *event) override;
    // The screen's Alt+letters win over the main menu's while the focus is in the screen.
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    // The control of the screen that answers to Alt+letter: a visible button, a box by its
    // label, or a tab; nullptr when none does.
    QWidget *mnemonicTarget(QKeyEvent *event, int *tab = nullptr) const;
    QWidget *mnemonicTarget(const QString &letter, int *tab) const;
    // Ctrl+PgDn and Ctrl+PgUp from `from`: the next or the previous page of the tabs around it
    // (or of the screen's tabs) comes up, with the focus in its first box. False when the key
    // is not one of these or the screen has no tabs.
    bool turnPage(QWidget *from, QKeyEvent *event, bool turn);

    bool m_dirty = false;
    QString m_questionTitle = QStringLiteral("UYARI");
    QString m_questionText = QStringLiteral("Değişen Bilgileri Kaydetmek İstiyor Musunuz?");
};

// Tab goes through the controls in the order given, as the eye reads the screen; the controls
// not named keep their places after the last one.
void setTabOrder(std::initializer_list<QWidget *> order);

// Puts the focus in the first control of a screen, in tab order, unless one of its controls
// has it already: an operator starts typing as soon as the screen is there.
void focusFirstBox(QWidget *screen);

} // namespace ui
