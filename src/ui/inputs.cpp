#include "ui/inputs.h"

#include "base/turkish_text.h"
#include "ui/message.h"

#include <QRegularExpression>

#include <QAbstractItemView>
#include <QAbstractSpinBox>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QFocusEvent>
#include <QKeyEvent>
#include <QPlainTextEdit>
#include <QPointer>
#include <QTimer>

namespace ui {

// ---- DateEdit --------------------------------------------------------------------------------

DateEdit::DateEdit(QWidget *parent)
    : QLineEdit(parent)
{
    setInputMask(QStringLiteral("99.99.9999;_"));
    setMaximumWidth(fontMetrics().horizontalAdvance(QStringLiteral("00.00.00000")) + 16);
    setPlaceholderText(QStringLiteral("gg.aa.yyyy"));
}

bool DateEdit::isBlank() const
{
    QString digits = text();
    digits.remove(QLatin1Char('.')).remove(QLatin1Char('_')).remove(QLatin1Char(' '));
    return digits.isEmpty();
}

QDate DateEdit::date() const
{
    if (isBlank())
        return QDate();
    return base::TarihOku(text()).value_or(QDate());
}

void DateEdit::setDate(const QDate &date)
{
    if (!date.isValid() || base::SifirTarihMi(date))
        clear();
    else
        setText(base::TarihYaz(date));
}

bool DateEdit::isAcceptable() const
{
    return isBlank() || base::TarihOku(text()).has_value();
}

void DateEdit::focusInEvent(QFocusEvent *event)
{
    QLineEdit::focusInEvent(event);
    QTimer::singleShot(0, this, [this] {
        if (hasFocus())
            selectAll();
    });
}

void DateEdit::focusOutEvent(QFocusEvent *event)
{
    QLineEdit::focusOutEvent(event);
    if (!m_warnOnLeave || isAcceptable() || !isEnabled() || isReadOnly())
        return;
    // A day that does not exist is not left in the box: the operator is told and sent back.
    const QString typed = text();
    QPointer<DateEdit> self(this);
    QTimer::singleShot(0, this, [self, typed] {
        if (!self || self->isAcceptable())
            return;
        notify(QStringLiteral("Dikkat"),
               QStringLiteral("\"%1\" geçerli bir tarih değil. Lütfen tarihi gg.aa.yyyy "
                              "biçiminde, takvimde bulunan bir gün olarak giriniz.")
                   .arg(typed),
               Icon::Warning, self->window());
        if (self) {
            self->setFocus(Qt::OtherFocusReason);
            self->selectAll();
        }
    });
}

// ---- MoneyEdit -------------------------------------------------------------------------------

MoneyEdit::MoneyEdit(QWidget *parent)
    : QLineEdit(parent)
{
    setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    setMaxLength(22);
}

std::optional<base::Para> MoneyEdit::value() const
{
    if (text().trimmed().isEmpty())
        return base::Para();
    return base::ParaCoz(text());
}

QString MoneyEdit::refusal() const
{
    const std::optional<base::Para> v = value();
    if (!v) {
        // Digits that money cannot hold, or no amount at all.
        static const QRegularExpression s_digits(QStringLiteral("^\\s*-?[0-9.]+(,[0-9]*)?\\s*$"));
        if (s_digits.match(text()).hasMatch())
            return QStringLiteral("Tutar çok büyük: hesap sınırı aşıldı.");
        return QStringLiteral("\"%1\" bir tutar değil. Tutarı rakamla, 1.250,50 biçiminde "
                              "giriniz.")
            .arg(text().trimmed());
    }
    if (!m_negativeAllowed && v->isNegative())
        return QStringLiteral("Bu alana eksi bir tutar girilemez.");
    return QString();
}

void MoneyEdit::setValue(base::Para value)
{
    setText(base::Bicimle(value, m_format));
}

void MoneyEdit::focusInEvent(QFocusEvent *event)
{
    QLineEdit::focusInEvent(event);
    QTimer::singleShot(0, this, [this] {
        if (hasFocus())
            selectAll();
    });
}

void MoneyEdit::focusOutEvent(QFocusEvent *event)
{
    QLineEdit::focusOutEvent(event);
    const QString why = refusal();
    if (why.isEmpty()) {
        if (const std::optional<base::Para> v = value(); v && !text().trimmed().isEmpty())
            setText(base::Bicimle(*v, m_format));
        return;
    }
    // Leaving the box for another one: the operator is told, and the focus comes back. A
    // message box or a menu taking the focus is no leaving.
    const Qt::FocusReason reason = event->reason();
    if (m_warning || reason == Qt::ActiveWindowFocusReason || reason == Qt::PopupFocusReason)
        return;
    m_warning = true;
    notify(QStringLiteral("UYARI"), why, Icon::Warning, this);
    setFocus(Qt::OtherFocusReason);
    selectAll();
    m_warning = false;
}

// ---- moving through a screen ---------------------------------------------------------------

namespace {

// Moves on as the Tab key does, so that the focus chain of the screen is followed.
void sendTab(QWidget *w, bool back)
{
    QKeyEvent tab(QEvent::KeyPress, back ? Qt::Key_Backtab : Qt::Key_Tab,
                  back ? Qt::ShiftModifier : Qt::NoModifier);
    QApplication::sendEvent(w, &tab);
}

class EnterFilter : public QObject
{
public:
    using QObject::QObject;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        auto *w = qobject_cast<QWidget *>(watched);
        if (!w)
            return false;
        if (event->type() == QEvent::FocusIn) {
            if (auto *edit = qobject_cast<QLineEdit *>(w)) {
                QPointer<QLineEdit> e(edit);
                QTimer::singleShot(0, edit, [e] {
                    if (e && e->hasFocus())
                        e->selectAll();
                });
            }
            return false;
        }
        if (event->type() != QEvent::KeyPress)
            return false;
        auto *key = static_cast<QKeyEvent *>(event);
        if (key->modifiers() & (Qt::ControlModifier | Qt::AltModifier))
            return false;
        auto *combo = qobject_cast<QComboBox *>(w);
        if (combo && combo->view() && combo->view()->isVisible())
            return false;
        switch (key->key()) {
        case Qt::Key_Return:
        case Qt::Key_Enter:
            sendTab(w, false);
            return true;
        case Qt::Key_Down:
            if (combo)
                return false; // the arrows choose in a combo
            sendTab(w, false);
            return true;
        case Qt::Key_Up:
            if (combo)
                return false;
            sendTab(w, true);
            return true;
        default:
            return false;
        }
    }
};

} // namespace

void moveWithEnter(QWidget *form)
{
    auto *filter = new EnterFilter(form);
    const QList<QWidget *> children = form->findChildren<QWidget *>();
    for (QWidget *w : children) {
        if (qobject_cast<QLineEdit *>(w) || qobject_cast<QCheckBox *>(w)
            || qobject_cast<QAbstractSpinBox *>(w)
            || (qobject_cast<QComboBox *>(w) && !qobject_cast<QComboBox *>(w->parentWidget()))) {
            w->installEventFilter(filter);
        }
    }
}

void markRequired(QWidget *box, bool required)
{
    QPalette p = box->palette();
    const QColor colour = required ? QColor(0xff, 0xff, 0xc0) // 0xc0ffff as BGR
                                   : QApplication::palette(box).color(QPalette::Base);
    p.setColor(QPalette::Base, colour);
    box->setPalette(p);
}

void limitTo(QLineEdit *box, int size)
{
    if (size > 0)
        box->setMaxLength(size);
}

} // namespace ui
