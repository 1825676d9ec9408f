/* Numbers and strings. */
#pragma once

/* A number that begins at a digit or at a dot in front of one; true. */
bool scan_number(const char *at);
/* A string that begins at a quote; true. */
bool scan_string(const char *at);
