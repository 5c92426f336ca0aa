# Warnings, sanitizers and the compiler cache, for every target of the project.
find_program(CCACHE ccache)
if(CCACHE)
  # Paths are taken relative to the checkout, so that a second one builds from the same cache.
  # The sloppiness is what the cache asks for where headers are precompiled.
  set(CMAKE_CXX_COMPILER_LAUNCHER
      ${CMAKE_COMMAND} -E env CCACHE_BASEDIR=${PROJECT_SOURCE_DIR} CCACHE_NOHASHDIR=1
      CCACHE_SLOPPINESS=pch_defines,time_macros ${CCACHE})
endif()
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  add_compile_options(-fpch-preprocess)  # lets the cache see which precompiled header serves
  # Giving memory back takes the compiler a tenth of its time: it may take 1 GB before it does.
  add_compile_options(--param=ggc-min-heapsize=1000000)
endif()

# Headers that most files include, read once and not by each: half of the time of a build. Every
# file includes what it needs all the same; CMAKE_DISABLE_PRECOMPILE_HEADERS shows whether it does.
set(ORV_COMMON_HEADERS
    <algorithm> <array> <chrono> <cstdint> <filesystem> <functional> <map> <memory> <optional>
    <set> <span> <string> <string_view> <utility> <variant> <vector> <fmt/format.h>)
set(ORV_QT_HEADERS
    <QAction> <QApplication> <QCheckBox> <QClipboard> <QComboBox> <QDialog> <QDialogButtonBox>
    <QDockWidget> <QFileDialog> <QFormLayout> <QHeaderView> <QKeyEvent> <QLabel> <QLineEdit>
    <QMainWindow> <QMenu> <QMessageBox> <QPainter> <QPushButton> <QSettings> <QTableView> <QTimer>
    <QToolBar> <QToolButton> <QTreeWidget> <QVBoxLayout>)

# Precompiles `headers` for the first target that asks with this `kind`; later ones share them.
function(orv_precompile target kind)
  get_property(owner GLOBAL PROPERTY ORV_PRECOMPILED_${kind})
  if(owner)
    target_precompile_headers(${target} REUSE_FROM ${owner})
  else()
    target_precompile_headers(${target} PRIVATE ${ARGN})
    set_property(GLOBAL PROPERTY ORV_PRECOMPILED_${kind} ${target})
  endif()
endfunction()

add_compile_options(-Wall -Wextra -Wpedantic)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  # GCC 12 warns of its own library's joining of strings where headers are precompiled.
  add_compile_options(-Wno-array-bounds -Wno-restrict)
endif()
if(ORV_WERROR)
  add_compile_options(-Werror)
endif()

if(ORV_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_compile_definitions(_GLIBCXX_ASSERTIONS)  # subscripts of strings, vectors and spans
  add_link_options(-fsanitize=address,undefined)
endif()

if(ORV_FUZZ)
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()
