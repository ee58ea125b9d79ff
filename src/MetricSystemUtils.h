// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// MetricSystemUtils: the unit symbols beside product dimensions and weights.

#ifndef ORVAUTILS_METRICSYSTEMUTILS_H
#define ORVAUTILS_METRICSYSTEMUTILS_H

#include "orvautils_export.h"

#include <QObject>
#include <QString>

/// Symbols of units. Thread: as for any QObject; symbol() may be called from any thread. Nothing is
/// logged.
///
/// \code
/// MetricSystemUtils::symbol(MetricSystemUtils::Weight, MetricSystemUtils::Metric,
///                           MetricSystemUtils::ShortSymbol); // "Kg"
/// \endcode
class ORVAUTILS_EXPORT MetricSystemUtils : public QObject
{
    Q_OBJECT

public:
    /// What is measured.
    enum TypeGrandeur : int {
        Length = 0, ///< of a product
        Weight = 1, ///< of a product
        Distance = 2 ///< of a way
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

    /// \a parent owns the object, or nobody does.
    explicit MetricSystemUtils(QObject* parent = nullptr);
    /// Nothing goes with it.
    ~MetricSystemUtils() override;

    /// The symbol of the unit of \a quantity in \a system, written as \a display tells: "m" for a
    /// length, "Kg" for a weight and "Km" for a distance, in the metric system and as a short
    /// symbol. Empty for any other combination, numbers that have no name included. Deliberate:
    /// "Kg" and "Km" are written with a capital.
    static QString symbol(TypeGrandeur quantity, SystemMetric system, Display display);
};

#endif // ORVAUTILS_METRICSYSTEMUTILS_H
