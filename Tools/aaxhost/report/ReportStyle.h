#pragma once

/** The style sheet of the report page: for screens of any width, light and dark, and for paper. */
extern const char* const kReportStyle;
