#pragma once

#include <QDate>
#include <QLatin1StringView>
#include <QVariant>

#include <optional>
#include <variant>

namespace pg::distinta {

// The kinds of the distinta's columns, as their name prefixes say: codes, descriptions and
// flags are text; dat_ dates of the header are dates (the rows keep the suite's yyyymmdd
// text); val_ amounts and rates are doubles (the amounts in distinta may be missing in rows
// of old distinte); num_ numbers are integers.
enum class ColumnKind { Text, Date, Double, NullableDouble, Long };

// One column of a record type: its name in the database, its kind, its width for text
// columns, and where the value lives in the typed record. One table of these per record
// type serves the database code, the list, the grouping and the bank file.
template<typename Record>
struct ColumnDef
{
    using Member = std::variant<QString Record::*, QDate Record::*, double Record::*,
                                std::optional<double> Record::*, qint32 Record::*>;

    QLatin1StringView name;
    ColumnKind kind;
    int width; // text columns; 0 otherwise
    Member member;

    QVariant value(const Record &record) const
    {
        return std::visit(
            [&](auto m) -> QVariant {
                const auto &v = record.*m;
                using T = std::decay_t<decltype(v)>;
                if constexpr (std::is_same_v<T, std::optional<double>>)
                    return v ? QVariant(*v) : QVariant(QMetaType::fromType<double>());
                else if constexpr (std::is_same_v<T, QDate>)
                    return v.isValid() ? QVariant(v) : QVariant(QMetaType::fromType<QDate>());
                else
                    return QVariant::fromValue(v);
            },
            member);
    }

    void setValue(Record &record, const QVariant &value) const
    {
        std::visit(
            [&](auto m) {
                auto &v = record.*m;
                using T = std::decay_t<decltype(v)>;
                if constexpr (std::is_same_v<T, std::optional<double>>)
                    v = value.isNull() ? std::nullopt : std::optional<double>(value.toDouble());
                else if constexpr (std::is_same_v<T, QDate>)
                    v = value.isNull() ? QDate() : QDate::fromString(value.toString().left(10), Qt::ISODate);
                else if constexpr (std::is_same_v<T, QString>)
                    v = value.isNull() ? QString() : value.toString();
                else if constexpr (std::is_same_v<T, double>)
                    v = value.toDouble();
                else
                    v = value.toInt();
            },
            member);
    }
};

} // namespace pg::distinta
