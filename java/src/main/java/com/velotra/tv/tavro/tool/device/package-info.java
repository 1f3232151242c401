/**
 * Work with a device through adb: {@code Adb} runs it, and each action of ./tavro device is a class. What is printed
 * goes to standard output; problems are {@link com.velotra.tv.tavro.tool.input.Failure}s.
 */
package com.velotra.tv.tavro.tool.device;
