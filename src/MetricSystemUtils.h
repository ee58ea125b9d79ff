// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// MetricSystemUtils: the unit symbols of product dimensions and weights.

#ifndef ORVAUTILS_METRICSYSTEMUTILS_H
#define ORVAUTILS_METRICSYSTEMUTILS_H

#include "orvautils_export.h"

#include <QObject>
#include <QString>

/// Symbols of units.
///
/// \code
/// MetricSystemUtils::symbol(MetricSystemUtils::Weight, MetricSystemUtils::Metric,
///                           MetricSystemUtils::ShortSymbol); // "Kg"
/// \endcode
///
/// symbol() may be called from any thread, and the object itself is used like any QObject. Nothing
/// is logged.
class ORVAUTILS_EXPORT MetricSystemUtils : public QObject
{
    Q_OBJECT

public:
    /// What is measured.
    enum TypeGrandeur : int {
        Length = 0, ///< a dimension of a product
        Weight = 1, ///< the weight of a product
        Distance = 2 ///< a distance between two places
    };
    Q_ENUM(TypeGrandeur)

    /// The system of units.
    enum SystemMetric : int {
        Metric = 0 ///< metres and kilograms
    };
    Q_ENUM(SystemMetric)

    /// How a unit is written.
    enum Display : int {
        ShortSymbol = 0 ///< "m"
    };
    Q_ENUM(Display)

    /// \a parent takes ownership of the object unless it is null.
    explicit MetricSystemUtils(QObject* parent = nullptr);
    /// Destroys the object.
    ~MetricSystemUtils() override;

    /// The symbol of the unit of \a quantity in \a system, in the form of \a display: "m" for a
    /// length, "Kg" for a weight and "Km" for a distance in the metric system. Empty for any other
    /// combination, including values that have no enumerator. Deliberate: "Kg" and "Km" are written
    /// with a capital.
    static QString symbol(TypeGrandeur quantity, SystemMetric system, Display display);
};

#endif // ORVAUTILS_METRICSYSTEMUTILS_H
