/* SPDX-License-Identifier: MIT */
/*
 * What the Windows build keeps as resources: the five descriptions and the version record. The table is read by
 * Platform_Linux.cpp; the layout of a row is that of its struct Resource.
 */

        .macro  description label, file
        .balign 8
\label\()_begin:
        .incbin "\file"
\label\()_end:
        .byte   0
        .endm

        .macro  row number, type, label
        .balign 8
        .quad   \type
        .quad   \label\()_begin
        .long   \number
        .long   \label\()_end - \label\()_begin
        .endm

        .section .rodata.lumivex_descriptions, "a", %progbits
        description system_xml, "LumivexTLSystem.xml"
        description interface_xml, "LumivexTLInterface.xml"
        description device_xml, "LumivexTLDevice.xml"
        description buffer_xml, "LumivexTLBuffer.xml"
        description datastream_xml, "LumivexTLDataStream.xml"
type_system:     .asciz "TLREGS"
type_interface:  .asciz "INTERFACEREGS"
type_device:     .asciz "DEVTLREGS"
type_buffer:     .asciz "BUFFREGS"
type_datastream: .asciz "DSREGS"

        .section .data.rel.ro.lumivex_resources, "aw", %progbits
        .balign 8
        .global lumivex_resources
        .hidden lumivex_resources
        .global lumivex_resources_end
        .hidden lumivex_resources_end
lumivex_resources:
        row     115, type_system, system_xml
        row     116, type_interface, interface_xml
        row     118, type_device, device_xml
        row     120, type_buffer, buffer_xml
        row     121, type_datastream, datastream_xml
lumivex_resources_end:

/* The version record: signature, then the four 16-bit numbers in two words, high word first. */
        .section .rodata.lumivex_version, "a", %progbits
        .balign 4
        .global lumivex_version_record
        .hidden lumivex_version_record
lumivex_version_record:
        .long   0xFEEF04BD
        .long   (LUMIVEX_VERSION_MAJOR << 16) | LUMIVEX_VERSION_MINOR
        .long   (LUMIVEX_VERSION_PATCH << 16) | LUMIVEX_VERSION_TWEAK

        .section .note.GNU-stack, "", %progbits
