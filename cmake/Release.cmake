# The date of the release, taken from the heading of this version in CHANGELOG.md, for man pages,
# AppStream data and the package's changelog. A version that has no dated heading yet is being
# prepared: it has the date of the build, or of SOURCE_DATE_EPOCH.
#   ORV_RELEASE_DATE        2026-11-24
#   ORV_RELEASE_DATE_RFC    Tue, 24 Nov 2026 00:00:00 +0000
#   ORV_RELEASE_TYPE        stable, or development
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/CHANGELOG.md)
file(STRINGS ${PROJECT_SOURCE_DIR}/CHANGELOG.md heading LIMIT_COUNT 1
  REGEX "^## \\[${PROJECT_VERSION}\\] - [0-9-]+$")
if(heading)
  string(REGEX REPLACE ".* - " "" ORV_RELEASE_DATE "${heading}")
  set(ORV_RELEASE_TYPE stable)
else()
  string(TIMESTAMP ORV_RELEASE_DATE "%Y-%m-%d" UTC)
  set(ORV_RELEASE_TYPE development)
endif()
execute_process(COMMAND date --utc --date ${ORV_RELEASE_DATE} --rfc-email
  OUTPUT_VARIABLE ORV_RELEASE_DATE_RFC OUTPUT_STRIP_TRAILING_WHITESPACE
  COMMAND_ERROR_IS_FATAL ANY)
