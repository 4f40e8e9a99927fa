#!/usr/bin/env bash
# End-to-end cases of the launcher with clients already running (running_client.exe under
# accounts and reply modes of each case): which client gets the command line, which ones are
# left out, and what start.txt holds afterwards.
# Usage: client_cases.sh [CASE...]   (all cases when none is named)
source "$(dirname "$0")/cases_lib.sh"

# what every run with clients must show
exchange_was_clean() {
  printf '%s\n' "$out" | grep -q '^== launcher-exit 0$' || fail "the launcher did not end normally"
  local role
  for role in $(printf '%s\n' "$out" | awk -F'\t' '$1 ~ /^nickname-request:/ { print $1 }' | sort -u); do
    [ "$(lines_of "$role" | sort -u)" = wparam-is-tray ] || fail "$role: the request did not carry the tray handle"
  done
  printf '%s\n' "$out" | grep -q '^forward-bad:' && fail "a forward was malformed: $(printf '%s\n' "$out" | grep '^forward-bad:')"
  has_trace "CStartHideWindowForm dealloc hwnd is "
}
run_with() {  # run_with "CLIENTS" [SETUP]
  MIVO_E2E_CLIENTS="$1" MIVO_E2E_SETUP="$strings${2:+; $2}" run "$current" /open "chat room" /uid 42
  exchange_was_clean
}

case_one_running_client_gets_the_command_line() {
  run_with "alice@gmail.com"
  has_trace "CStartApp::InitInstance cmdLineString is $request"
  has_trace "CStartApp::InitInstance usertype is 2"
  [ "$(lines_of forward:alice@gmail.com)" = "$request" ] || fail "forwarded: [$(lines_of forward:alice@gmail.com)]"
  [ "$(forwards)" = 1 ] || fail "expected one forward, got $(forwards)"
  [ "$(count_of client)" = 0 ] || fail "a client was started"
  [ "$(count_of update)" = 0 ] || fail "the update executor ran"
  store_is '{"Choice":0,"LastUser":"","Users":["alice@gmail.com"]}'
}

case_two_clients_with_a_remembered_choice() {
  # the hand-written store has a comment and "Choice" as a boolean; it is written back compact;
  # a stored account that is not running does not force a question
  run_with "alice@gmail.com bob@qq.com" \
    "$(store_setup '// mine
{"Users":["gone@gmail.com","alice@gmail.com","bob@qq.com"],"LastUser":"bob@qq.com","Choice":true}')"
  has_trace "CStartApp::InitInstance usertype is 4"
  [ "$(lines_of forward:bob@qq.com)" = "$request" ] || fail "forwarded to bob: [$(lines_of forward:bob@qq.com)]"
  [ "$(forwards)" = 1 ] || fail "expected one forward, got $(forwards)"
  [ "$(count_of client)" = 0 ] || fail "a client was started"
  store_is '{"Choice":1,"LastUser":"bob@qq.com","Users":["alice@gmail.com","bob@qq.com"]}'
}

# The user must choose, but this installation has no skin for the window that would ask, so
# the launcher goes on as when no client runs; the store keeps its choice and records the
# clients now running. (choice_cases.sh has the window.)
case_a_new_account_makes_the_user_choose() {
  run_with "alice@gmail.com bob@qq.com new@126.com" \
    "$(store_setup '{"Choice":1,"LastUser":"bob@qq.com","Users":["alice@gmail.com","bob@qq.com"]}')"
  has_trace "CStartApp::InitInstance usertype is 3"
  has_trace "start_hide_window\\start_hide_window.xml missing or unreadable"
  [ "$(forwards)" = 0 ] || fail "a text was forwarded without a choice"
  store_is '{"Choice":1,"LastUser":"bob@qq.com","Users":["alice@gmail.com","bob@qq.com","new@126.com"]}'
}

case_a_hung_client_is_dropped_in_bounded_time() {
  # bob's windows are the newest, so he is asked first and holds the request for 30 s
  run_with "alice@gmail.com bob@gmail.com:hang:30000"
  [ "$(count_of nickname-request:bob@gmail.com)" = 1 ] || fail "bob was not asked"
  has_trace "CStartApp::InitInstance usertype is 2"
  [ "$(lines_of forward:alice@gmail.com)" = "$request" ] || fail "forwarded to alice: [$(lines_of forward:alice@gmail.com)]"
  [ "$(forwards)" = 1 ] || fail "expected one forward, got $(forwards)"
  local asked forwarded
  asked=$(times_of nickname-request:bob@gmail.com); forwarded=$(times_of forward:alice@gmail.com)
  [ -n "$asked" ] && [ -n "$forwarded" ] && [ $((forwarded - asked)) -lt 10000 ] ||
    fail "the hung client held the launcher from $asked to $forwarded"
  store_is '{"Choice":0,"LastUser":"","Users":["alice@gmail.com"]}'
}

case_clients_that_answer_wrongly_are_dropped() {
  # a late answer within the limit counts; one for another account, an empty one or none do not
  run_with "alice@gmail.com:late:1000 bob@gmail.com:other:nobody@gmail.com carl@gmail.com:empty dora@gmail.com:silent"
  local who
  for who in alice bob carl dora; do
    [ "$(count_of "nickname-request:$who@gmail.com")" = 1 ] || fail "$who was not asked once"
  done
  has_trace "CStartApp::InitInstance usertype is 2"
  [ "$(lines_of forward:alice@gmail.com)" = "$request" ] || fail "forwarded to alice: [$(lines_of forward:alice@gmail.com)]"
  [ "$(forwards)" = 1 ] || fail "expected one forward, got $(forwards)"
  store_is '{"Choice":0,"LastUser":"","Users":["alice@gmail.com"]}'
}

case_malformed_replies_and_store_are_survived() {
  # an oversize reply is refused; an unterminated one is read within its size, bad UTF-8 kept
  run_with "alice@gmail.com:oversize bob@gmail.com:unterminated carl@gmail.com:badutf8" \
    "$(store_setup '{"Users":"bob@gmail.com","LastUser":7,"Choice":"yes"} {{{{')"
  has_trace "nickname reply of 4095 bytes ignored"
  has_trace "CStartApp::InitInstance usertype is 3"
  [ "$(forwards)" = 0 ] || fail "a text was forwarded"
  store_is '{"Choice":0,"LastUser":"","Users":["bob@gmail.com","carl@gmail.com"]}'
}

case_a_command_line_too_long_to_forward_is_refused() {
  local long
  long=$(printf 'x%.0s' $(seq 2100))
  MIVO_E2E_CLIENTS="alice@gmail.com" MIVO_E2E_SETUP="$strings" run "$current" /open "$long"
  exchange_was_clean
  has_trace "CStartApp::InitInstance usertype is 2"
  has_trace "text of 2107 bytes not forwarded, the limit is 2048"
  [ "$(forwards)" = 0 ] || fail "a text was forwarded"
  [ "$(count_of client)" = 0 ] || fail "a client was started"
  store_is '{"Choice":0,"LastUser":"","Users":["alice@gmail.com"]}'
}

run_cases "$@"
