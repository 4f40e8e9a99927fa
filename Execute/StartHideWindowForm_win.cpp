#include "Execute/StartHideWindowForm.h"

#include "Execute/ClientWindows.h"
#include "common/AppPath.h"
#include "common/Trace.h"

const wchar_t CStartHideWindowForm::kClassName[] = L"TARNELL MIVO2006 StartHideWindowForm Form";

CStartHideWindowForm::CStartHideWindowForm()
    : LoginUserStore(mivo::common::GetAppPath(), &CSystemClientWindows::Get()) {}

CStartHideWindowForm::~CStartHideWindowForm() {
  if (m_hwnd && IsWindow(m_hwnd)) {
    SetWindowLongPtrW(m_hwnd, GWLP_USERDATA, 0);
    DestroyWindow(m_hwnd);
  }
  if (g_ITrace)
    g_ITrace->Trace(3, true, L"CStartHideWindowForm dealloc hwnd is %0x",
                    static_cast<unsigned>(reinterpret_cast<UINT_PTR>(m_hwnd)));
  SaveStartFile();
}

HWND CStartHideWindowForm::Create(HWND parent, const CString& title, DWORD style, DWORD exStyle) {
  HINSTANCE instance = GetModuleHandleW(nullptr);
  WNDCLASSW windowClass = {};
  if (!GetClassInfoW(instance, kClassName, &windowClass)) {
    windowClass.style = CS_HREDRAW | CS_VREDRAW | CS_DBLCLKS;
    windowClass.lpfnWndProc = WindowProc;
    windowClass.hInstance = instance;
    windowClass.hCursor = LoadCursorW(nullptr, MAKEINTRESOURCEW(32512));  // IDC_ARROW
    windowClass.lpszClassName = kClassName;
    if (!RegisterClassW(&windowClass)) return nullptr;
  }
  m_hwnd = CreateWindowExW(exStyle, kClassName, title, style, 0, 0, 0, 0, parent, nullptr, instance, this);
  return m_hwnd;
}

LRESULT CALLBACK CStartHideWindowForm::WindowProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_NCCREATE) {
    auto* create = reinterpret_cast<CREATESTRUCTW*>(lParam);
    SetWindowLongPtrW(hwnd, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(create->lpCreateParams));
  }
  auto* form = reinterpret_cast<CStartHideWindowForm*>(GetWindowLongPtrW(hwnd, GWLP_USERDATA));
  if (message == WM_COPYDATA && form) {
    const auto* copy = reinterpret_cast<const COPYDATASTRUCT*>(lParam);
    if (copy) form->OnNicknameReply(copy->lpData, copy->cbData);
    return TRUE;
  }
  return DefWindowProcW(hwnd, message, wParam, lParam);
}
