#pragma once
/// How the socket layer ends its messages: the words of an error code and, in brackets, the code itself.

namespace net {

/// `what` followed by "words (code)".
const char* code_message(const char* what, int code);
/// The same with WSAGetLastError; to be called before anything else may change it.
const char* last_error_message(const char* what);

} // namespace net
