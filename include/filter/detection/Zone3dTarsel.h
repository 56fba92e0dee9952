#pragma once

#include <memory>
#include <set>
#include <string>
#include <vector>

#include <boost/uuid/uuid.hpp>

#include <filter/detection/Zone3dBase.h>
#include <orvantis/Api.h>

namespace orvantis::filter::detection {

/// A volumetric zone with an identity, an enabled flag and the names of the sensors it is bound to.
///
/// The zone stores the sensors; the monitors that are given points by sensor filter by them. Copies share the
/// shape, as those of Zone3dBase do, and have a set of sensors of their own. The zone locks nothing. An
/// operation that does not say what it throws throws std::bad_alloc, and what a host's own shape throws.
class ORVANTIS_API Zone3dTarsel : public Zone3dBase {
 public:
  /// Loads element `index` of the list "Zone3d" at the current path.
  /// @throws what `load` and LoggingManager::getLogger throw
  Zone3dTarsel(SettingsManager& settings, int index);
  /// Enabled, without sensors.
  /// @param id kept as given, also when it is nil
  /// @throws what LoggingManager::getLogger throws
  Zone3dTarsel(std::shared_ptr<Zone> zone, double zMin, double zMax, boost::uuids::uuid id);
  Zone3dTarsel(const Zone3dTarsel&) = default;
  Zone3dTarsel& operator=(const Zone3dTarsel&) = default;
  ~Zone3dTarsel() override;

  /// Whether the ids are equal; nothing else is compared.
  bool operator==(const Zone3dTarsel& other) const noexcept { return id_ == other.id_; }

  boost::uuids::uuid getId() const noexcept { return id_; }
  bool enabled() const noexcept { return enabled_; }
  void setEnabled(bool enabled) noexcept { enabled_ = enabled; }
  /// A copy of the set.
  std::set<std::string> getSpecificSensors() const { return specificSensors_; }
  /// Replaces the set; a name that is given twice is kept once.
  void setSpecificSensors(const std::vector<std::string>& sensors);

  using Zone3dBase::load;
  using Zone3dBase::save;
  /// Reads element `index` of the list "Zone3d" at the current path: "enabled" (default true), "id" (the nil
  /// id asks for a fresh random one), "Sensors" with its "lidar" entries, "name", "shape" with its geometry,
  /// "zMin" and "zMax". Unlike the base, it requires the heights.
  /// @param index from 0; -1 means the first element. One past the last appends an element; it
  ///   has no keys, so its read fails
  /// @throws boost::property_tree::ptree_error for a missing key or a height that is not a number,
  ///   boost::bad_lexical_cast for a text that is not an id, boost::uuids::entropy_error when the system
  ///   gives no random id. The zone then keeps what was read before, and the path stays where the read
  ///   failed. std::out_of_range for any other index; nothing is changed then
  virtual void load(SettingsManager& settings, int index);
  /// Writes element `index`. A zone without a shape is written without "id" and "name"; a zone without
  /// sensors is written without "Sensors". When the element is there already, the sensors are added to those
  /// it lists: save into a fresh store. A bound that is not finite is written as text that `load` refuses.
  /// @param index as for `load`; one past the last appends the element
  /// @throws std::out_of_range for any other index; nothing is written then
  virtual void save(SettingsManager& settings, int index);

 private:
  boost::uuids::uuid id_{};
  bool enabled_ = true;
  std::set<std::string> specificSensors_;
};

}  // namespace orvantis::filter::detection
