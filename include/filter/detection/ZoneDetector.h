#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <iosfwd>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <filter/detection/Zone3dBase.h>
#include <logging/LoggedComponent.h>
#include <orvantis/Api.h>

namespace orvantis::filter::detection {

/// The configuration of a zone detector: eight evaluation fields of up to three zones, exclusion zones and
/// options.
///
/// It holds configuration and evaluates nothing. Zones and fields are shared pointers: the copy constructor
/// shares them, assignment clones them. The detector locks nothing: do not change it while another thread
/// uses it. An operation that does not say what it throws throws std::bad_alloc only.
class ORVANTIS_API ZoneDetector : public LoggedComponent {
 public:
  static const std::uint32_t CURRENT_API_MAJOR_VERSION = 1;
  static const std::uint32_t CURRENT_API_MINOR_VERSION = 1;
  static const std::int32_t NUM_EVAL_FIELDS = 8;
  static const std::int32_t NUM_ZONES_PER_EVAL_FIELD = 3;
  static const std::int32_t MAX_NUM_EXCLUSION_ZONES = 32;
  static const std::int32_t MAX_NUM_ZONES = 1000;  ///< published only
  /// The name under which hosts keep the settings document; no operation opens a file.
  static const std::string DEFAULT_FILE_NAME;

  /// The level that an occupied zone drives its output to.
  enum class TriggerZoneValue : std::int32_t { LOW = 0, HIGH = 1 };

  using Milliseconds = std::chrono::duration<int, std::milli>;

  struct EvaluationField {
    std::string name;
    std::array<std::shared_ptr<Zone3dBase>, NUM_ZONES_PER_EVAL_FIELD> zones;  ///< null: an empty slot
  };
  using EvaluationFieldArray = std::array<std::shared_ptr<EvaluationField>, NUM_EVAL_FIELDS>;

  /// A detector without fields and exclusion zones; minimum points 1, debounce time 0 ms, trigger level HIGH.
  ZoneDetector();
  /// Shares the given fields.
  explicit ZoneDetector(const EvaluationFieldArray& fields);
  /// Shallow: shares fields and exclusion zones with the source.
  ZoneDetector(const ZoneDetector&);
  /// Deep and partial: takes version, debounce time, minimum points, trigger level and clones of all zones
  /// that have a shape (others are dropped); keeps its own logger, software-command flag and evaluation field
  /// index. Every clone is a plain Zone3dBase.
  /// @throws what LoggingManager::getLogger throws, and what a host's own shape throws from `makeCopy`; the
  ///   target is then partly assigned
  ZoneDetector& operator=(const ZoneDetector& other);
  ~ZoneDetector() override;

  // The options are stored unchecked.

  Milliseconds getDebounceTime() const noexcept { return debounceTime_; }
  void setDebounceTime(Milliseconds debounceTime) noexcept { debounceTime_ = debounceTime; }
  int getMinPoints() const noexcept { return minPoints_; }
  void setMinPoints(int minPoints) noexcept { minPoints_ = minPoints; }
  /// 11 - sensitivity for 1 to 10, else 1.
  int getMinPointsFromSensitivity(int sensitivity) const noexcept;
  /// 11 - minPoints for 1 to 10, else 10.
  int getSensitivityFromMinPoints(int minPoints) const noexcept;
  TriggerZoneValue getTriggerZone() const noexcept { return triggerZone_; }
  void setTriggerZone(TriggerZoneValue triggerZone) noexcept { triggerZone_ = triggerZone; }
  bool useSoftwareAPICommand() const noexcept { return useSoftwareApiCommand_; }
  void setUseSoftwareAPICommand(bool use) noexcept { useSoftwareApiCommand_ = use; }
  /// Stored for the host: the field that is active.
  unsigned char getEvaluationFieldIndex() const noexcept { return evaluationFieldIndex_; }
  void setEvaluationFieldIndex(unsigned char index) noexcept { evaluationFieldIndex_ = index; }

  EvaluationFieldArray& getEvaluationFieldArray() noexcept { return evaluationFields_; }
  const EvaluationFieldArray& getEvaluationFieldArray() const noexcept { return evaluationFields_; }
  void setEvaluationFieldArray(const EvaluationFieldArray& fields) noexcept { evaluationFields_ = fields; }

  // Field indices are 0..7 and zone indices 0..2.

  /// @return null for an empty slot
  /// @throws std::out_of_range for any other index
  std::shared_ptr<EvaluationField> getEvaluationField(int field) const;
  /// Shares the field; a field without a name is named "EvaluationField" and its index.
  /// @param evaluationField null empties the slot
  /// @throws std::out_of_range for any other index; nothing is changed then
  void setEvaluationField(const std::shared_ptr<EvaluationField>& evaluationField, int field);
  /// @return null for an empty slot
  /// @throws std::out_of_range for any other index
  std::shared_ptr<Zone3dBase> getZone(int field, int zone) const;
  /// Shares the zone, making the field when its slot is empty; a shape without a name is named "Zone" and its
  /// index.
  /// @param zone3d null empties the slot
  /// @throws std::out_of_range for any other index; nothing is changed then
  void setZone(const std::shared_ptr<Zone3dBase>& zone3d, int field, int zone);

  // Edits of the exclusion zones. They share the zones, and refuse bad input with a warning that leaves the
  // list as it is.

  const std::vector<std::shared_ptr<Zone3dBase>>& getExclusionZoneVector() const noexcept {
    return exclusionZones_;
  }
  /// Appends every zone in order, each with the checks of `appendExclusionZone`. The zones that are in the
  /// list already stay.
  void setExclusionZoneVector(const std::vector<std::shared_ptr<Zone3dBase>>& zones);
  /// Refuses a null zone, an empty name, the 33rd zone, a name longer than 18 bytes, and a name that is in
  /// the list.
  void appendExclusionZone(const std::shared_ptr<Zone3dBase>& zone);
  /// Replaces the first zone of that name; refuses a null zone and an empty new name. The length of the new
  /// name is not checked, and neither is whether the list has it already.
  void updateExclusionZone(const std::string& name, const std::shared_ptr<Zone3dBase>& zone);
  /// Removes the first zone of that name, if there is one.
  void eraseExclusionZone(const std::string& name);
  /// False, with a warning, when an exclusion zone has exactly this name.
  bool validateExclusionZoneName(std::string name);

  /// The API version of this library after construction and load; the version in a document is not kept.
  std::string getVersion() const { return version_; }
  /// Major and minor number of this library: "1.1".
  static std::string currentAPIVersion();
  /// Whether the major number that the text begins with is at most this library's; a text without a number is
  /// accepted.
  static bool checkVersion(const std::string& version) noexcept;

  /// Replaces the content by that of the child "ZoneDetector" at the current path. Without that child, the
  /// lists are read at the current path and the options keep their values. Missing options keep their values,
  /// except sensitivity (then 10) and triggerActiveLevel (then "high"). An unknown level or shape is logged
  /// as a warning and loading goes on. Pops one path level at the end, also when there is no "ZoneDetector"
  /// to enter. A rectangle that does not have two points is logged as an error and hides what follows it in
  /// the document, since it leaves the path inside its entry.
  /// @throws boost::property_tree::ptree_error for a required key that is missing or mistyped and for a
  ///   "useSoftwareAPICommand" that is not a boolean, std::out_of_range for an "index" outside its range; the
  ///   detector is then partly loaded, and the path stays where the read failed. What
  ///   LoggingManager::getLogger throws
  void load(SettingsManager& settings);
  /// Writes the document below the current path, without the zones that have no shape. It removes nothing
  /// that the store holds already, such as the ends of longer lists: save into a fresh store.
  /// @throws what a host's own shape throws
  void save(SettingsManager& settings) const;

  /// Checks an untrusted document before it is loaded, and stops at the first fault. May run on any thread.
  /// @param input read up to 102400 bytes; the document must be shorter. Exceptions that it is set to
  ///   throw do not leave this operation
  /// @throws std::runtime_error with the fault as text, and what LoggingManager::getLogger throws
  static void validate(std::istream& input);
  /// The part of `validate` that checks the "ExclusionZone" list at the current path, and leaves the path
  /// there. A polygon without geometry gets an empty "Polygon" node.
  /// @throws std::runtime_error with the fault as text
  static void validateExclusionZone(SettingsManager& settings);
  /// Whether the name has 1 to 18 bytes.
  static bool validateZoneNameLength(const std::string& name) noexcept;

 private:
  // For the host's evaluation; the value -1 means that nothing is known yet.
  struct ZoneState {
    std::int32_t count = 0;
    std::int32_t value = -1;
  };

  void loadOptions(SettingsManager& settings);
  void loadExclusionZones(SettingsManager& settings);
  void loadEvaluationFields(SettingsManager& settings);
  void saveExclusionZones(SettingsManager& settings) const;
  void saveEvaluationFields(SettingsManager& settings) const;

  std::int32_t minPoints_ = 1;
  std::uint8_t evaluationFieldIndex_ = 0;
  EvaluationFieldArray evaluationFields_;
  std::vector<std::shared_ptr<Zone3dBase>> exclusionZones_;
  std::array<std::array<ZoneState, NUM_ZONES_PER_EVAL_FIELD>, NUM_EVAL_FIELDS> zoneStates_;
  Milliseconds debounceTime_{0};
  std::string version_;
  bool useSoftwareApiCommand_ = false;
  TriggerZoneValue triggerZone_ = TriggerZoneValue::HIGH;
  std::map<std::int32_t, std::int32_t> minPointsBySensitivity_;
};

}  // namespace orvantis::filter::detection
