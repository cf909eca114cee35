# SPDX-License-Identifier: Apache-2.0

RECORDKIT_VERSION = 1.0
# The tree that this folder is a part of.
RECORDKIT_SITE = $(BR2_EXTERNAL_RECORDKIT_PATH)/../..
RECORDKIT_SITE_METHOD = local
RECORDKIT_OVERRIDE_SRCDIR_RSYNC_EXCLUSIONS = --exclude /build
RECORDKIT_LICENSE = Apache-2.0
RECORDKIT_LICENSE_FILES = LICENSE
RECORDKIT_INSTALL_STAGING = YES
RECORDKIT_DEPENDENCIES = boost

# The compiler's wrapper hardens by the configuration; pkg-config adds the sysroot itself.
RECORDKIT_CONF_OPTS = -DRECORDKIT_HARDENING=OFF -DRECORDKIT_RELOCATABLE_PC=OFF

RECORDKIT_UNITS = recordkit-log.target
ifeq ($(BR2_PACKAGE_RECORDKIT_HOST_PLATFORM),y)
RECORDKIT_DEPENDENCIES += cli11 fmt json-for-modern-cpp
RECORDKIT_CONF_OPTS += -DRECORDKIT_PLATFORM=host \
	-DRECORDKIT_D3_FOLDER=$(BR2_PACKAGE_RECORDKIT_D3_FOLDER)
RECORDKIT_UNITS += recordkit-log.service
else
RECORDKIT_CONF_OPTS += -DRECORDKIT_PLATFORM=external
endif

define RECORDKIT_INSTALL_BOARD_FILES
	$(INSTALL) -D -m 0644 $(@D)/packaging/board/tmpfiles.conf \
		$(TARGET_DIR)/usr/lib/tmpfiles.d/recordkit.conf
	$(INSTALL) -D -m 0644 $(@D)/packaging/board/sysctl.conf \
		$(TARGET_DIR)/usr/lib/sysctl.d/60-recordkit.conf
endef
RECORDKIT_POST_INSTALL_TARGET_HOOKS += RECORDKIT_INSTALL_BOARD_FILES

define RECORDKIT_INSTALL_INIT_SYSTEMD
	$(foreach unit,$(RECORDKIT_UNITS), \
		$(INSTALL) -D -m 0644 $(@D)/packaging/board/$(unit) \
			$(TARGET_DIR)/usr/lib/systemd/system/$(unit)$(sep))
endef

$(eval $(cmake-package))
