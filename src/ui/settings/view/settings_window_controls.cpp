#include <utility>

#include "ui/resource.h"
#include "ui/settings/view/control_ids.h"
#include "ui/settings/view/settings_window.h"
#include "ui/win32/combo_box.h"

/// The settings window's controls: creation, reading and updating.
namespace tlpacscfg {
namespace {

using win32::ComboBox;

bool takesTabStop(Kind kind) {
  return kind == Kind::Text || kind == Kind::Check || kind == Kind::Option || kind == Kind::List ||
         kind == Kind::TickList;
}

bool isTicked(HWND button) { return SendMessageW(button, BM_GETCHECK, 0, 0) == BST_CHECKED; }

std::wstring_view groupOf(const ControlDesign& option) {
  const std::wstring_view name = option.name;
  return name.substr(0, name.rfind(L'_'));
}

/// The label before the field, or the first field of its group, if it has one.
const ControlDesign* labelOf(const ControlDesign& field) {
  const auto place = static_cast<std::size_t>(field.control);
  if (place == 0 || !takesTabStop(field.kind)) return nullptr;
  const ControlDesign& before = controls()[place - 1];
  return before.kind == Kind::Label && before.page == field.page ? &before : nullptr;
}

void setTabStop(HWND control, bool wanted) {
  const LONG style = GetWindowLongW(control, GWL_STYLE);
  const LONG changed =
      wanted ? style | static_cast<LONG>(WS_TABSTOP) : style & ~static_cast<LONG>(WS_TABSTOP);
  if (changed != style) SetWindowLongW(control, GWL_STYLE, changed);
}

}  // namespace

HWND frmPACSSettings::control(Control control) const {
  const ControlDesign& wanted = design(control);
  if (wanted.page == Page::Window) return item(idOf(control));
  return pages_[static_cast<std::size_t>(wanted.page) - 1]->item(idOf(control));
}

void frmPACSSettings::onInit() {
  for (const ControlDesign& each : controls()) {
    if (each.page == Page::Window) setText(idOf(each.control), each.text);
  }
  shown_ = SettingsForm(editor_.form.xmlFiles);
  createPages();
  createList();
  fillLists();
  setTooltips();
  scrolling_.attach(window());
}

void frmPACSSettings::createPages() {
  const HWND tabs = item(IDC_frmPACSSettings_SSPACSOptions);
  pages_.clear();
  int index = 0;
  for (const PageDesign& page : pages()) {
    std::wstring caption = page.caption;
    TCITEMW tab{};
    tab.mask = TCIF_TEXT;
    tab.pszText = caption.data();
    SendMessageW(tabs, TCM_INSERTITEMW, static_cast<WPARAM>(index++),
                 reinterpret_cast<LPARAM>(&tab));
    pages_.push_back(std::make_unique<SettingsPage>(
        page.page, [this](int controlId, int code) { onCommand(controlId, code); }));
    pages_.back()->create(window());
    std::erase(caption, L'&');
    SetWindowTextW(pages_.back()->window(), caption.c_str());
  }
  RECT place{};
  GetWindowRect(tabs, &place);
  MapWindowPoints(nullptr, window(), reinterpret_cast<POINT*>(&place), 2);
  TabCtrl_AdjustRect(tabs, FALSE, &place);
  HWND above = item(IDC_frmPACSSettings_lvwConfigs);
  for (const auto& page : pages_) {
    SetWindowPos(page->window(), above, place.left, place.top, place.right - place.left,
                 place.bottom - place.top, SWP_NOACTIVATE);
    above = page->window();
  }
  // A page hides what lies below it, so the tabs come after the pages, also for the Tab key.
  SetWindowPos(tabs, above, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
  win32::insertHiddenLabel(tabs, design(Control::SSPACSOptions).accessibleName);
}

void frmPACSSettings::createList() {
  const HWND list = item(IDC_frmPACSSettings_lvwConfigs);
  configurations_.attach(list, editor_.rows, ConfigurationRows::kConfigID);
  RECT client{};
  GetClientRect(list, &client);
  // The identifier is already shown before the description.
  configurations_.addColumn(L"Config ID", 0);
  configurations_.addColumn(L"Configuration", client.right);
  configurations_.stretchColumn(ConfigurationRows::kConfiguration, 0);
}

void frmPACSSettings::fillLists() {
  for (const ControlDesign& each : controls()) {
    if (each.kind != Kind::List) continue;
    const ComboBox list(control(each.control));
    for (const Option& option : optionsOf(each.control)) list.add(option.text, option.code);
    if (each.control == Control::cmbXMLConfugrationFile) {
      for (const std::wstring& file : editor_.form.xmlFiles) list.add(file, 0);
    }
    list.fitDroppedWidth();
  }
  std::vector<std::wstring> fields;
  for (const Option& field : kDictationFields) fields.emplace_back(field.text);
  accessionFields().attach(control(Control::cmpAccessionFields), control(Control::cmbContextUpdate),
                           design(Control::Label7).text, fields,
                           [this] { runCommand([this] { editor_.accessionTickClicked(); }); });
}

win32::TickComboBox& frmPACSSettings::accessionFields() const {
  return pages_[static_cast<std::size_t>(Page::ContextChanges) - 1]->tickList;
}

void frmPACSSettings::setTooltips() {
  tooltips_.attach(window());
  for (const ControlDesign& each : controls()) {
    if (*each.tooltip != L'\0') tooltips_.set(control(each.control), each.tooltip);
  }
}

void frmPACSSettings::readControls() {
  for (const ControlDesign& each : controls()) {
    const HWND window = control(each.control);
    ControlContent& content = editor_.form[each.control];
    ControlContent& shown = shown_[each.control];
    if (each.kind == Kind::Text) {
      // A text that the control cannot hold as it is stays untouched until the user edits it.
      std::wstring text = win32::windowText(window);
      if (text != shown.text) content.text = shown.text = std::move(text);
    } else if (each.kind == Kind::Check || each.kind == Kind::Option) {
      content.ticked = shown.ticked = isTicked(window);
    } else if (each.kind == Kind::List) {
      content.position = shown.position = ComboBox(window).position();
    }
  }
  for (std::size_t i = 0; i < kDictationFieldCount; ++i) {
    const bool ticked = accessionFields().ticked(i);
    editor_.form.accessionTicks[i] = ticked;
    shown_.accessionTicks[i] = ticked;
  }
  editor_.selectedRow = configurations_.selectedRow();
}

void frmPACSSettings::present() {
  if (!isCreated()) return;
  presentRows();
  presentForm();
  EnableWindow(control(Control::btnDelete), editor_.deleteEnabled);
  if (std::exchange(editor_.rulesWanted, false)) startRulesTimer();
  if (std::exchange(editor_.firstTabWanted, false)) showPage(0);
  updateTabStops();
  if (isVisible()) presentFocus();
}

void frmPACSSettings::presentRows() {
  if (std::exchange(editor_.rowsChanged, false)) configurations_.refill();
  if (editor_.selectedRow == configurations_.selectedRow()) return;
  configurations_.clearSelection();
  if (editor_.selectedRow) configurations_.select(*editor_.selectedRow);
}

void frmPACSSettings::presentForm() {
  for (const ControlDesign& each : controls()) {
    presentControl(each, editor_.form[each.control], shown_[each.control]);
  }
  for (std::size_t i = 0; i < kDictationFieldCount; ++i) {
    const bool ticked = editor_.form.accessionTicks[i];
    if (ticked != shown_.accessionTicks[i]) accessionFields().setTicked(i, ticked);
  }
  shown_.accessionTicks = editor_.form.accessionTicks;
  accessionFields().setDisplayText(accessionDisplayText(editor_.form));
}

void frmPACSSettings::presentControl(const ControlDesign& each, const ControlContent& wanted,
                                     ControlContent& shown) {
  const HWND window = control(each.control);
  if (wanted.ticked != shown.ticked) {
    SendMessageW(window, BM_SETCHECK, wanted.ticked ? BST_CHECKED : BST_UNCHECKED, 0);
  }
  if (wanted.position != shown.position) ComboBox(window).selectPosition(wanted.position);
  if (wanted.tooltip != shown.tooltip) tooltips_.set(window, std::wstring(wanted.tooltip));
  if (wanted.enabled != shown.enabled) {
    EnableWindow(window, wanted.enabled);
    if (const ControlDesign* label = labelOf(each)) {
      EnableWindow(control(label->control), wanted.enabled);
    }
  }
  if (wanted.visible != shown.visible) {
    ShowWindow(window, wanted.visible ? SW_SHOWNA : SW_HIDE);
    if (each.kind == Kind::Heading) {
      pages_[static_cast<std::size_t>(each.page) - 1]->redrawHeadings();
    }
  }
  const bool newText = wanted.text != shown.text;
  shown = wanted;
  if (!newText) return;
  SetWindowTextW(window, wanted.text.c_str());
  shown.text = win32::windowText(window);
}

/// Moves the focus away from hidden and disabled controls.
void frmPACSSettings::presentFocus() {
  if (std::exchange(editor_.descriptionFocusWanted, false)) {
    showPage(0);
    const HWND description = control(Control::txtDescription);
    // In the next field the mouse wheel would change the selection; the list only scrolls.
    moveFocus(IsWindowEnabled(description) ? description : control(Control::lvwConfigs));
    return;
  }
  const HWND focus = GetFocus();
  if (!focus || !IsChild(window(), focus)) return;
  if (IsWindowEnabled(focus) && IsWindowVisible(focus)) return;
  moveFocus(GetNextDlgTabItem(window(), focus, FALSE));
}

/// Like the Tab key: selects the text of a field and resets the default button.
void frmPACSSettings::moveFocus(HWND target) const {
  SendMessageW(window(), WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(target), TRUE);
  scrolling_.reveal(target);
}

void frmPACSSettings::showPage(std::size_t index) {
  page_ = index;
  const HWND tabs = item(IDC_frmPACSSettings_SSPACSOptions);
  TabCtrl_SetCurSel(tabs, static_cast<int>(index));
  bool focusHidden = false;
  for (std::size_t i = 0; i < pages_.size(); ++i) {
    const HWND page = pages_[i]->window();
    ShowWindow(page, i == index ? SW_SHOWNA : SW_HIDE);
    focusHidden |= i != index && IsChild(page, GetFocus());
  }
  UpdateWindow(tabs);
  updateTabStops();
  // Windows' tab control leaves the focus where it was when it is clicked.
  if (focusHidden) moveFocus(tabs);
}

/// The selected option of a group, or else the first, has the tab stop.
bool frmPACSSettings::takesTabStopInGroup(const ControlDesign& option) const {
  const ControlDesign* leader = nullptr;
  for (const ControlDesign& each : controls()) {
    if (each.kind != Kind::Option || groupOf(each) != groupOf(option)) continue;
    if (!leader || isTicked(control(each.control))) leader = &each;
  }
  return leader == &option;
}

void frmPACSSettings::updateTabStops() const {
  for (const ControlDesign& each : controls()) {
    if (each.page == Page::Window || !takesTabStop(each.kind)) continue;
    const bool onPage = pages_[page_]->page() == each.page;
    const bool reachable = each.kind != Kind::Option || takesTabStopInGroup(each);
    setTabStop(control(each.control), onPage && reachable);
  }
}

}  // namespace tlpacscfg
