// Peer: Apache POI's HSSF, the usual writer of .xls from Java.
//
//   java xls_peer_poi.java FILE.csv FILE.xls

import java.io.FileOutputStream;
import java.io.OutputStream;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.List;
import org.apache.poi.hssf.usermodel.HSSFWorkbook;
import org.apache.poi.ss.usermodel.CellStyle;
import org.apache.poi.ss.usermodel.DataValidationHelper;
import org.apache.poi.ss.usermodel.Font;
import org.apache.poi.ss.usermodel.Row;
import org.apache.poi.ss.usermodel.Sheet;
import org.apache.poi.ss.util.CellRangeAddressList;

class xls_peer_poi {
  static final String[] TYPES = {"Van Sales", "Ready Stock", "Order Booking"};
  static final String[] HAND_HELD = {"YES", "NO"};

  static void addList(Sheet sheet, int target, int source, String column, String[] values) {
    for (int i = 0; i <= values.length; ++i) {
      Row row = sheet.getRow(i) != null ? sheet.getRow(i) : sheet.createRow(i);
      row.createCell(source).setCellValue(i == 0 ? "DSType" : values[i - 1]);
    }
    DataValidationHelper helper = sheet.getDataValidationHelper();
    String range = "$" + column + "$2:$" + column + "$" + (values.length + 1);
    sheet.addValidationData(helper.createValidation(helper.createFormulaListConstraint(range),
        new CellRangeAddressList(1, 999, target, target)));
    sheet.setColumnWidth(target, 30 * 256);
    sheet.setColumnHidden(source, true);
  }

  static int write(List<String> lines, String path) throws Exception {
    try (HSSFWorkbook workbook = new HSSFWorkbook(); OutputStream out = new FileOutputStream(path)) {
      Sheet sheet = workbook.createSheet();
      CellStyle bold = workbook.createCellStyle();
      Font font = workbook.createFont();
      font.setBold(true);
      bold.setFont(font);
      int cells = 0;
      for (int i = 0; i < lines.size(); ++i) {
        Row row = sheet.createRow(i);
        String[] fields = lines.get(i).split(",", -1);
        for (int k = 0; k < fields.length; ++k) {
          row.createCell(k).setCellValue(fields[k]);
          if (i == 0) row.getCell(k).setCellStyle(bold);
        }
        cells += fields.length;
      }
      addList(sheet, 5, 249, "IP", TYPES);
      addList(sheet, 6, 250, "IQ", HAND_HELD);
      workbook.write(out);
      return cells;
    }
  }

  static String peak() throws Exception {
    for (String line : Files.readAllLines(Path.of("/proc/self/status"))) {
      if (line.startsWith("VmHWM:")) return line.replaceAll("\\D", "");
    }
    throw new Exception("the peak memory of the process can't be read");
  }

  public static void main(String[] args) throws Exception {
    List<String> lines = Files.readAllLines(Path.of(args[0]), StandardCharsets.ISO_8859_1);
    ProcessHandle.Info info = ProcessHandle.current().info();
    double processor = info.totalCpuDuration().get().toNanos() / 1e6;
    long start = System.nanoTime();
    int cells = write(lines, args[1]);
    double passed = (System.nanoTime() - start) / 1e6;
    processor = ProcessHandle.current().info().totalCpuDuration().get().toNanos() / 1e6 - processor;
    System.out.println(passed + " " + processor + " " + peak() + " " + cells);
  }
}
