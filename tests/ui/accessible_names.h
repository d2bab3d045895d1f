#pragma once

#include <windows.h>

#include <memory>
#include <span>
#include <string>
#include <vector>

/// The names that assistive technology gives to the controls of a window.
namespace tlpacscfg::test {

/// What the name of a control depends on.
struct ControlFacts {
  std::wstring className;
  std::wstring text;
  DWORD style = WS_VISIBLE;
  std::wstring annotation = {};
};

/// The rule of the system's accessibility library. An annotation comes first. A button, static text
/// or dialog is named by its own text; any other control by the next static text before it, even by
/// one that is hidden, unless another visible tab stop or group comes first.
std::wstring accessibleName(std::span<const ControlFacts> siblings, std::size_t control);

/// What is wrong with the names of what a user meets together, each item the controls of a window
/// or page in their order: a control, group or page has no name, or one that sounds like another's.
std::vector<std::wstring> nameProblems(const std::vector<std::vector<ControlFacts>>& parts);

struct AnnotationRecords;

/// Takes the place of the system's service for annotations on the thread that creates it.
class RecordedAnnotations {
 public:
  RecordedAnnotations();
  ~RecordedAnnotations();
  RecordedAnnotations(const RecordedAnnotations&) = delete;
  RecordedAnnotations& operator=(const RecordedAnnotations&) = delete;

  std::wstring nameOf(HWND control) const;
  /// 0 without one.
  LONG roleOf(HWND control) const;
  /// The controls whose annotations have not been cleared.
  std::size_t count() const;

 private:
  std::shared_ptr<AnnotationRecords> records_;
  DWORD registration_ = 0;
};

/// The controls of a window or page in their order.
std::vector<ControlFacts> factsOf(HWND window, const RecordedAnnotations& annotations);

/// The name that the system's accessibility library, or the control itself, tells.
std::wstring toldName(HWND control);

}  // namespace tlpacscfg::test
