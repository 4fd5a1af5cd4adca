#pragma once

#include "base/notice.h"

#include <QString>

#include <optional>
#include <utility>

namespace base {

// A failure as the reporter needs it: the error number (the engine's, or one of ours), its
// text, and the "Form:Procedure" label of the procedure that failed.
//
// Or a refusal: a rule that says no (no write right, a fee in use, a student held by another
// user) gives its notice as the error of its result. A refusal is no failure: the screen shows
// the notice as it stands and nothing goes to the error table.
struct Error
{
    int number = 0;
    QString text;
    QString label;
    int line = 0;
    std::optional<Bildiri> red = std::nullopt;

    static Error refusal(Bildiri notice)
    {
        Error e;
        e.text = notice.metin;
        e.red = std::move(notice);
        return e;
    }
    static Error refusal(const QString &title, const QString &text, Icon icon = Icon::Warning)
    {
        return refusal(Bildiri{title, text, icon});
    }
    bool isRefusal() const { return red.has_value(); }

    Error withLabel(const QString &newLabel) const
    {
        Error e = *this;
        if (e.label.isEmpty())
            e.label = newLabel;
        return e;
    }
};

// The value of a step that can fail, or its error. No exception crosses a subsystem.
template<typename T>
class [[nodiscard]] Result
{
public:
    Result(T value)
        : m_value(std::move(value))
    {}
    Result(Error error)
        : m_error(std::move(error))
    {}

    bool ok() const { return m_value.has_value(); }
    explicit operator bool() const { return ok(); }
    const T &value() const { return *m_value; }
    T &value() { return *m_value; }
    const T &operator*() const { return *m_value; }
    T &operator*() { return *m_value; }
    const T *operator->() const { return &*m_value; }
    const Error &error() const { return m_error; }
    T value_or(T fallback) const { return m_value ? *m_value : std::move(fallback); }

private:
    std::optional<T> m_value;
    Error m_error;
};

template<>
class [[nodiscard]] Result<void>
{
public:
    Result() = default;
    Result(Error error)
        : m_failed(true)
        , m_error(std::move(error))
    {}

    bool ok() const { return !m_failed; }
    explicit operator bool() const { return ok(); }
    const Error &error() const { return m_error; }

private:
    bool m_failed = false;
    Error m_error;
};

using Status = Result<void>;

} // namespace base
