#!/usr/bin/env bash
# End-to-end cases of the login-user window under Wine: several clients are running and no
# remembered choice settles which one gets the command line, so the launcher shows its window
# and fake_user.exe clicks through it.
# Usage: choice_cases.sh [CASE...]   (all cases when none is named)
source "$(dirname "$0")/cases_lib.sh"

skin="cp -r '$resources/skins' skins"
run_with() {  # run_with "CLIENTS" "USER STEPS" [SETUP]
  MIVO_E2E_CLIENTS="$1" MIVO_E2E_USER="$2" MIVO_E2E_SETUP="$strings; $skin${3:+; $3}" run "$current" /open "chat room" /uid 42
  printf '%s\n' "$out" | grep -q '^== launcher-exit 0$' || fail "the launcher did not end normally"
  has_trace "CStartApp::InitInstance usertype is 3"
  has_trace "CStartHideWindowForm dealloc hwnd is "
  [ "$(count_of client)" = 0 ] || fail "the launcher started a client of its own"
  [ "$(lines_of user-form-shown)" = "Choose a user 340x300" ] || fail "the window shown: [$(lines_of user-form-shown)]"
}

case_ok_sends_to_the_first_row() {
  run_with "carol@163.com alice@gmail.com bob@qq.com" "ok"
  [ "$(lines_of forward:alice@gmail.com)" = "$request" ] || fail "forwarded to alice: [$(lines_of forward:alice@gmail.com)]"
  [ "$(forwards)" = 1 ] || fail "expected one forward, got $(forwards)"
  store_is '{"Choice":0,"LastUser":"alice@gmail.com","Users":["alice@gmail.com","bob@qq.com","carol@163.com"]}'
}

case_the_last_user_is_preselected_and_the_choice_kept() {
  run_with "alice@gmail.com bob@qq.com new@126.com" "ok" \
    "$(store_setup '{"Choice":1,"LastUser":"bob@qq.com","Users":["alice@gmail.com","bob@qq.com"]}')"
  [ "$(lines_of forward:bob@qq.com)" = "$request" ] || fail "forwarded to bob: [$(lines_of forward:bob@qq.com)]"
  [ "$(forwards)" = 1 ] || fail "expected one forward, got $(forwards)"
  store_is '{"Choice":1,"LastUser":"bob@qq.com","Users":["alice@gmail.com","bob@qq.com","new@126.com"]}'
}

case_a_picked_row_with_remember_is_stored() {
  run_with "alice@gmail.com bob@qq.com" "row:1 remember ok"
  [ "$(lines_of forward:bob@qq.com)" = "$request" ] || fail "forwarded to bob: [$(lines_of forward:bob@qq.com)]"
  [ "$(forwards)" = 1 ] || fail "expected one forward, got $(forwards)"
  store_is '{"Choice":1,"LastUser":"bob@qq.com","Users":["alice@gmail.com","bob@qq.com"]}'
}

# The keyboard alone: the list has the focus when the window opens, Down moves the selection,
# Tab reaches the check box, Space ticks it and Enter presses the default button (OK).
case_the_keyboard_alone_picks_remembers_and_sends() {
  run_with "carol@163.com alice@gmail.com bob@qq.com" "key:down key:tab key:space key:enter"
  [ "$(lines_of forward:bob@qq.com)" = "$request" ] || fail "forwarded to bob: [$(lines_of forward:bob@qq.com)]"
  [ "$(forwards)" = 1 ] || fail "expected one forward, got $(forwards)"
  store_is '{"Choice":1,"LastUser":"bob@qq.com","Users":["alice@gmail.com","bob@qq.com","carol@163.com"]}'
}

# Without its string table the window speaks the built-in English (run_with checks the title).
case_cancel_sends_nothing_and_keeps_the_store() {
  run_with "alice@gmail.com bob@qq.com" "row:1 remember cancel" \
    "$(store_setup '{"Choice":0,"LastUser":"gone@qq.com","Users":[]}'); rm gdstrings.ini"
  has_trace "gdstrings.ini is missing; the built-in English texts are used"
  [ "$(forwards)" = 0 ] || fail "a text was forwarded"
  store_is '{"Choice":0,"LastUser":"gone@qq.com","Users":["alice@gmail.com","bob@qq.com"]}'
}

case_the_close_button_is_cancel() {
  run_with "alice@gmail.com bob@qq.com" "remember close"
  [ "$(forwards)" = 0 ] || fail "a text was forwarded"
  store_is '{"Choice":0,"LastUser":"","Users":["alice@gmail.com","bob@qq.com"]}'
}

run_cases "$@"
