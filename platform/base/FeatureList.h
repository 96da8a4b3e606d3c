#pragma once

/// Switches of the platform's feature-state table, by their entry numbers.
enum class Feature { ClientMode = 373 };

/// The feature-state table of the host.
class FeatureList {
 public:
  /// Throws Tovrin::Lib::Korel::KorelCtlException when the table cannot be read.
  static bool IsEnabled(Feature feature);
};
