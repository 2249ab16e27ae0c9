# The photographs of the demos lie in a Debian package of wallpapers, listed in
# scripts/packages.txt. Where it is not installed, the build downloads it
# through apt and unpacks it into its own folder, which needs no root.
set(VEXEL_PHOTO_PACKAGE lomiri-wallpapers-16.04)
set(VEXEL_PHOTO_FOLDER usr/share/backgrounds)
set(VEXEL_PHOTO_ROOT ${CMAKE_BINARY_DIR}/photos)

# The photographs that demos may use, each with its licence in CREDITS.md.
set(VEXEL_PHOTOS
  Bridge_by_Sander_Klootwijk.jpg
  Picture_0B_by_freespace.jpg
  Picture_1A_by_freespace.jpg
  aitzgorri_by_Aitzol_Berasategi.jpg
  free_by_Peter_Nerlich.jpg
  friends_by_Aitzol_Berasategi.jpg
  life_by_Aitzol_Berasategi.jpg
  picosdeeuropa_by_Aitzol_Berasategi.jpg
  seeding_by_Clements_Engelhardt.jpg
  sunset_by_Aitzol_Berasategi.jpg)

if(EXISTS /${VEXEL_PHOTO_FOLDER}/aitzgorri_by_Aitzol_Berasategi.jpg)
  set(VEXEL_PHOTO_DIR /${VEXEL_PHOTO_FOLDER})
else()
  set(VEXEL_PHOTO_DIR ${VEXEL_PHOTO_ROOT}/${VEXEL_PHOTO_FOLDER})
  list(TRANSFORM VEXEL_PHOTOS PREPEND ${VEXEL_PHOTO_DIR}/ OUTPUT_VARIABLE fetched)
  file(MAKE_DIRECTORY ${VEXEL_PHOTO_ROOT})
  add_custom_command(
    OUTPUT ${fetched}
    COMMAND apt-get download -qq ${VEXEL_PHOTO_PACKAGE}
    COMMAND sh -c "dpkg-deb -x ${VEXEL_PHOTO_PACKAGE}_*.deb . && rm ${VEXEL_PHOTO_PACKAGE}_*.deb"
    WORKING_DIRECTORY ${VEXEL_PHOTO_ROOT}
    COMMENT "Downloading the package ${VEXEL_PHOTO_PACKAGE}"
    VERBATIM)
  # Demos are built side by side; the package is fetched for all of them at once.
  add_custom_target(photos DEPENDS ${fetched})
endif()
